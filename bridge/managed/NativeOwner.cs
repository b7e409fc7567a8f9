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
    private const long Step = 1 << 16, SmallObject = 512;

    private readonly Action<IntPtr> end;
    private readonly bool isMeasured;
    private long measured, grown;
    private bool isDropped;

    /// <param name="handle">The object.</param>
    /// <param name="end">Ends it; null for what ends every object of the model.</param>
    internal NativeOwner(IntPtr handle, Action<IntPtr> end) : base(IntPtr.Zero, true)
    {
      this.end = end;
      isMeasured = end == null;
      NativeMemory.Made(SmallObject);
      SetHandle(handle);
    }

    public override bool IsInvalid { get { return handle == IntPtr.Zero; } }

    protected override void Dispose(bool disposing)
    {
      isDropped = !disposing;
      base.Dispose(disposing);
      if (isDropped) NativeMemory.CountFinalized();
    }

    protected override bool ReleaseHandle()
    {
      Ending();
      if (end == null) Native.zol_delete(handle);
      else end(handle);
      Account(0);
      if (!isDropped) NativeMemory.Disposed(SmallObject);
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
      if (size < measured && !isDropped) NativeMemory.Disposed(measured - size);
      measured = size;
      grown = 0;
    }
  }

  /// <summary>
  /// What native objects take, for the collector to know. It has one thread for finalizers, which
  /// falls behind where several make objects and drop them: who makes many waits for it now and then,
  /// which keeps the memory of a program bounded.
  /// </summary>
  internal static class NativeMemory
  {
    private const long Step = 1L << 26;
    private const int Turn = 20, LongestWait = 1000;  // milliseconds

    // Mono takes the word of a client and does nothing about it.
    private static readonly bool collectorIsDeaf = Type.GetType("Mono.Runtime") != null;
    private static long held, made, finalized;

    internal static void Add(long bytes)
    {
      if (bytes > 0) GC.AddMemoryPressure(bytes);
      else if (bytes < 0) GC.RemoveMemoryPressure(-bytes);
      Interlocked.Add(ref held, bytes);
      if (bytes > 0) Made(bytes);
    }

    internal static void Made(long bytes)
    {
      if (Interlocked.Add(ref made, bytes) < Math.Max(Step, Interlocked.Read(ref held) / 2)) return;
      Interlocked.Exchange(ref made, 0);
      if (collectorIsDeaf) GC.Collect();
      WaitForFinalizers();
    }

    /// <summary>Of what was made, so much went without the collector.</summary>
    internal static void Disposed(long bytes) { Interlocked.Add(ref made, -bytes); }

    internal static void CountFinalized() { Interlocked.Increment(ref finalized); }

    // Not for pending finalizers as such: one of them may be what runs here, or wait for a lock
    // that is held here.
    private static void WaitForFinalizers()
    {
      long before = Interlocked.Read(ref finalized);
      for (int waited = 0; waited < LongestWait; waited += Turn)
      {
        Thread.Sleep(Turn);
        long now = Interlocked.Read(ref finalized);
        if (now == before) return;
        before = now;
      }
    }
  }
}
