using System;
using System.Runtime.InteropServices;

namespace ZolModule
{
  /// <summary>
  /// A managed stand-in for a native object. One that was made with new, clone, factory or
  /// writeString owns its object and ends it in Dispose, or when the collector finds it. One that
  /// came out of another object borrows: it keeps that other proxy alive, refuses to work after
  /// its Dispose, and becomes invalid when the row it came from is deleted, cleared, replaced,
  /// reset or swapped, which nothing can notice. An object belongs to one thread at a time.
  /// </summary>
  public abstract class Proxy : IDisposable
  {
    /// <summary>
    /// Ends the object of a lost proxy. It stands apart because an object with a finalizer is dear
    /// to make, and most proxies borrow.
    /// </summary>
    private sealed class Keeper
    {
      private readonly Proxy proxy;
      internal Keeper(Proxy proxy) { this.proxy = proxy; }
      ~Keeper() { proxy.Delete(); }
    }

    private readonly Proxy parent;
    private readonly Keeper keeper;
    private bool disposed;

    internal Proxy(bool owned, Proxy parent)
    {
      this.parent = parent;
      if (owned) keeper = new Keeper(this);
    }

    public void Dispose()
    {
      if (disposed) return;
      disposed = true;
      if (keeper == null) return;
      GC.SuppressFinalize(keeper);
      Delete();
    }

    /// <summary>Ends the native object; a null handle is ignored there.</summary>
    internal abstract void Delete();

    /// <summary>The handle for one call, which keeps this proxy alive until it returns.</summary>
    internal HandleRef Use(IntPtr handle)
    {
      for (Proxy proxy = this; proxy != null; proxy = proxy.parent)
      {
        if (proxy.disposed) throw new ObjectDisposedException(proxy.GetType().Name);
      }
      return new HandleRef(this, handle);
    }

    /// <summary>The index, if the list has it: the native getters of values do not look.</summary>
    internal static uint Below(uint index, uint size)
    {
      if (index >= size) throw new ArgumentOutOfRangeException("index");
      return index;
    }
  }
}
