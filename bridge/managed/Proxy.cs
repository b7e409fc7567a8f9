using System;
using System.Runtime.InteropServices;

namespace Zol.Interop
{
  /// <summary>
  /// A managed stand-in for a native object. One that was made with new, clone, factory or
  /// writeString owns its object and ends it in Dispose, or when the collector finds it. One that
  /// came out of another object borrows: it keeps that other proxy alive, refuses to work after
  /// its Dispose, and becomes invalid when the row it came from is deleted, cleared, replaced,
  /// reset or swapped, which nothing here notices. An object belongs to one thread at a time.
  /// </summary>
  public abstract class Proxy : IDisposable
  {
    // Whatever class a handle goes by, it is the address of the object.
    private readonly IntPtr handle;
    private readonly Proxy parent;
    private readonly NativeOwner owner;
    private bool disposed;

    /// <param name="handle">The object.</param>
    /// <param name="owned">Whether it ends with the proxy.</param>
    /// <param name="parent">Whose object it is in; null for one of its own.</param>
    /// <param name="end">Ends an object of a class that is none of the model.</param>
    internal Proxy(IntPtr handle, bool owned, Proxy parent, Action<IntPtr> end = null)
    {
      this.handle = handle;
      this.parent = parent;
      if (owned) owner = new NativeOwner(handle, end);
      else if (parent != null) owner = parent.owner;
    }

    /// <summary>Ends the object if the proxy owns it. The proxy refuses to work afterwards.</summary>
    public void Dispose()
    {
      if (disposed) return;
      disposed = true;
      if (parent == null && owner != null) owner.Dispose();
      GC.SuppressFinalize(this);
    }

    /// <summary>The handle for one call, which keeps this proxy alive until it returns.</summary>
    internal HandleRef Self
    {
      get
      {
        for (Proxy proxy = this; proxy != null; proxy = proxy.parent)
        {
          if (proxy.disposed) throw new ObjectDisposedException(proxy.GetType().Name);
        }
        if (owner != null && owner.IsClosed) throw new ObjectDisposedException(GetType().Name);
        return new HandleRef(this, handle);
      }
    }

    internal static HandleRef Of(Proxy proxy)
    {
      return proxy == null ? new HandleRef(null, IntPtr.Zero) : proxy.Self;
    }

    /// <summary>The proxy, unless assigning it would cut its object to the rows of a base.</summary>
    internal static Proxy Uncut(Proxy proxy, string how, params uint[] types)
    {
      if (proxy == null || Array.IndexOf(types, Native.zol_type_of(proxy.Self)) >= 0) return proxy;
      throw new ArgumentException(
        "A " + proxy.GetType().Name + " would be cut to the rows of its base; " + how + ".");
    }

    /// <summary>The index, if the list has it.</summary>
    internal static uint Below(uint index, uint size)
    {
      if (index >= size) throw new ArgumentOutOfRangeException(nameof(index));
      return index;
    }

    /// <summary>The index of an entry to insert: it may be the one behind the last.</summary>
    internal static uint UpTo(uint index, uint size)
    {
      if (index > size) throw new ArgumentOutOfRangeException(nameof(index));
      return index;
    }

    /// <summary>A text on its way into the object.</summary>
    internal string Grown(string text)
    {
      if (text != null) Grow(4L * text.Length);
      return text;
    }

    /// <summary>Something new in the object.</summary>
    internal T Grown<T>(T entry)
    {
      Grow(EntrySize);
      return entry;
    }

    /// <summary>Tells the collector how large the object has become.</summary>
    internal T Measured<T>(T result)
    {
      if (owner != null) owner.Measure();
      return result;
    }

    private const long EntrySize = 256;

    private void Grow(long bytes)
    {
      if (owner != null) owner.Grow(bytes);
    }
  }

  /// <summary>Which type of its family an object is of. Each type has one identity.</summary>
  public struct TypeIdentity : IEquatable<TypeIdentity>
  {
    internal readonly IntPtr Address;

    internal TypeIdentity(IntPtr address) { Address = address; }

    /// <summary>Whether both are one type.</summary>
    public bool Equals(TypeIdentity other) { return Address == other.Address; }
    /// <summary>Whether both are one type.</summary>
    public override bool Equals(object obj)
    {
      return obj is TypeIdentity && Equals((TypeIdentity)obj);
    }
    /// <summary>A hash of the type.</summary>
    public override int GetHashCode() { return Address.GetHashCode(); }
    /// <summary>Whether both are one type.</summary>
    public static bool operator ==(TypeIdentity a, TypeIdentity b) { return a.Equals(b); }
    /// <summary>Whether they are two types.</summary>
    public static bool operator !=(TypeIdentity a, TypeIdentity b) { return !a.Equals(b); }

    /// <summary>The name of the type.</summary>
    public override string ToString() { return Text.Read(Address) ?? ""; }
  }
}
