using System;
using System.Collections.Generic;
using System.Runtime.InteropServices;

namespace Zol.Interop
{
  /// <summary>How a file operation ended.</summary>
  public sealed class FileReport
  {
    /// <summary>0, or that of the first fault.</summary>
    public elmx_error Code { get; private set; }
    /// <summary>For people; null if all is well.</summary>
    public string Message { get; private set; }
    /// <summary>The number of the archive's failure, if there was one.</summary>
    public int ArchiveCause { get; private set; }
    /// <summary>All that is wrong with the text, in its order.</summary>
    public IList<ZolFault> Faults { get; private set; }
    /// <summary>Where the first fault stands; 0 if no text was read.</summary>
    public int Line { get { return Faults.Count == 0 ? 0 : Faults[0].Line; } }
    /// <summary>The element or attribute of the first fault; null if there is none.</summary>
    public string Item { get { return Faults.Count == 0 ? null : Faults[0].Item; } }

    internal FileReport(IntPtr given) : this(given, null) { }

    /// <param name="given">An outcome, which is freed.</param>
    /// <param name="use">Sees it before.</param>
    internal FileReport(IntPtr given, Action<Native.Outcome> use)
    {
      if (given == IntPtr.Zero) throw new OutOfMemoryException();
      try
      {
        var outcome = Marshal.PtrToStructure<Native.Outcome>(given);
        Code = (elmx_error)outcome.Code;
        ArchiveCause = outcome.ArchiveCause;
        Message = Text.Read(outcome.Message);
        var faults = new ZolFault[outcome.FaultCount];
        int size = Marshal.SizeOf<Native.Fault>();
        for (int i = 0; i < faults.Length; ++i)
        {
          IntPtr at = new IntPtr(outcome.Faults.ToInt64() + (long)i * size);
          faults[i] = new ZolFault(Marshal.PtrToStructure<Native.Fault>(at));
        }
        Faults = Array.AsReadOnly(faults);
        if (use != null) use(outcome);
      }
      finally { Native.zol_outcome_free(given); }
    }

    internal void ThrowIfFailed()
    {
      if (Code != elmx_error.elmx_ok) throw new ZolException(this);
    }
  }

  public partial class Zol
  {
    /// <summary>The document in a file, .zol or .zolz.</summary>
    /// <exception cref="ZolException">There is none.</exception>
    public static Zol Open(string path)
    {
      if (path == null) throw new ArgumentNullException(nameof(path));
      Zol zol = new Zol();
      FileReport report = zol.openFile(path);
      if (report.Code == elmx_error.elmx_ok) return zol;
      zol.Dispose();
      throw new ZolException(report);
    }

    /// <summary>Replaces a file when the new one is complete, or leaves it as it was.</summary>
    /// <exception cref="ZolException">It could not be written.</exception>
    public void Save(string path) { saveFile(path).ThrowIfFailed(); }

    /// <summary>
    /// Makes this the document in the file; after a failure it is what it was before.
    /// </summary>
    public FileReport openFile(string path)
    {
      return Measured(new FileReport(Native.zol_open(Self, path ?? "", null, 0)));
    }

    /// <summary>Replaces a file when the new one is complete, or leaves it as it was.</summary>
    public FileReport saveFile(string path)
    {
      return new FileReport(Native.zol_save(Self, path ?? ""));
    }

    /// <summary>
    /// Adds the file to this document; what was read before a failure stays. Gives 1000 where the
    /// native function would throw.
    /// </summary>
    public elmx_error loadFile(string path)
    {
      return Measured((elmx_error)Native.zol_load_file(Self, path, IntPtr.Zero));
    }

    /// <summary>
    /// Writes in place: a failure may cost the older file. Save does not. Gives 1000 where the
    /// native function would throw.
    /// </summary>
    public elmx_error writeFile(string path)
    {
      return (elmx_error)Native.zol_write_file(Self, path, IntPtr.Zero);
    }
  }
}
