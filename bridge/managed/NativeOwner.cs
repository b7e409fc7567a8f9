using System;
using System.Runtime.InteropServices;
using System.Threading;

namespace Zol.Interop
{
  /// <summary>
  /// The one who ends a native object. As a critical finalizer it goes after those of a program, so
  /// that one of these may still use its document. Proxies of what is in the object keep it alive.
  /// </summary>
  internal sealed partial class NativeOwner : SafeHandle
  {
    private const long Step = 1 << 16;

    private readonly Action<IntPtr> end;
    private readonly bool isMeasured;
    private long measured, grown;

    /// <param name="handle">The object.</param>
    /// <param name="end">Ends it; null for what ends every object of the model.</param>
    internal NativeOwner(IntPtr handle, Action<IntPtr> end) : base(IntPtr.Zero, true)
    {
      this.end = end;
      isMeasured = end == null;
      SetHandle(handle);
    }

    public override bool IsInvalid { get { return handle == IntPtr.Zero; } }

    protected override bool ReleaseHandle()
    {
      Ending();
      if (end == null) Native.zol_delete(handle);
      else end(handle);
      Account(0);
      return true;
    }

    /// <summary>Tells the collector that the object is larger by about so much.</summary>
    internal void Grow(long bytes)
    {
      grown += bytes;
      if (grown >= Step && grown >= measured / 2) Measure(bytes);
    }

    /// <summary>Tells the collector how large the object is, beside what is about to come.</summary>
    internal void Measure(long coming = 0)
    {
      if (isMeasured && !IsClosed) Account(checked((long)Native.zol_memory(handle)) + coming);
    }

    partial void Ending();

    private void Account(long size)
    {
      NativeMemory.Add(size - measured);
      measured = size;
      grown = 0;
    }
  }

  /// <summary>What native objects take, for the collector to know.</summary>
  internal static class NativeMemory
  {
    private const long Step = 1L << 26;

    // Mono takes the word of a client and does nothing about it.
    private static readonly bool collectorIsDeaf = Type.GetType("Mono.Runtime") != null;
    private static long held, added;

    internal static void Add(long bytes)
    {
      if (bytes > 0) GC.AddMemoryPressure(bytes);
      else if (bytes < 0) GC.RemoveMemoryPressure(-bytes);
      if (!collectorIsDeaf) return;
      long now = Interlocked.Add(ref held, bytes);
      if (bytes <= 0 || Interlocked.Add(ref added, bytes) < Math.Max(Step, now / 2)) return;
      Interlocked.Exchange(ref added, 0);
      GC.Collect();
    }
  }
}
