using System;

namespace ZolModule
{
  /// <summary>How a file operation ended.</summary>
  public sealed class FileReport
  {
    public elmx_error Code { get; private set; }
    /// <summary>Where reading stopped; 0 if no text was read.</summary>
    public int Line { get; private set; }
    /// <summary>The element or attribute concerned; null if there is none.</summary>
    public string Item { get; private set; }
    /// <summary>For people; null if all is well.</summary>
    public string Message { get; private set; }
    /// <summary>The number of the archive's failure, if there was one.</summary>
    public int ArchiveCause { get; private set; }

    internal FileReport(Native.Report report)
    {
      Code = (elmx_error)report.Code;
      Line = report.Line;
      ArchiveCause = report.ArchiveCause;
      Item = report.Item == IntPtr.Zero ? null : Text.Take(report.Item);
      Message = report.Message == IntPtr.Zero ? null : Text.Take(report.Message);
    }
  }

  /// <summary>A file operation that failed.</summary>
  public sealed class ZolException : Exception
  {
    public FileReport Report { get; private set; }

    internal ZolException(FileReport report) : base(report.Message) { Report = report; }
  }

  public partial class Zol
  {
    /// <summary>The document in a file, .zol or .zolz.</summary>
    public static Zol Open(string path)
    {
      Zol zol = new Zol();
      FileReport report = zol.openFile(path);
      if (report.Code == elmx_error.elmx_ok) return zol;
      zol.Dispose();
      throw new ZolException(report);
    }

    /// <summary>Replaces a file when the new one is complete, or leaves it as it was.</summary>
    public void Save(string path)
    {
      FileReport report = saveFile(path);
      if (report.Code != elmx_error.elmx_ok) throw new ZolException(report);
    }

    /// <summary>
    /// Makes this the document in the file; after a failure it is what it was before.
    /// </summary>
    public FileReport openFile(string path)
    {
      Native.Report report;
      Native.zol_open_file(Self, path, out report);
      return new FileReport(report);
    }

    public FileReport saveFile(string path)
    {
      Native.Report report;
      Native.zol_save_file(Self, path, out report);
      return new FileReport(report);
    }

    /// <summary>
    /// Adds the file to this document; what was read before a failure stays. Gives 1000 where the
    /// native function would throw.
    /// </summary>
    public elmx_error loadFile(string path)
    {
      Native.Report report;
      Native.zol_load_file(Self, path, out report);
      return new FileReport(report).Code;
    }

    /// <summary>
    /// Writes in place: a failure may cost the older file. Save does not. Gives 1000 where the
    /// native function would throw.
    /// </summary>
    public elmx_error writeFile(string path)
    {
      Native.Report report;
      Native.zol_write_file(Self, path, out report);
      return new FileReport(report).Code;
    }
  }
}
