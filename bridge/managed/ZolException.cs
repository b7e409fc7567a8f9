using System;
using System.Collections.Generic;
using System.Globalization;
using Zol.Interop;

namespace Zol
{
  /// <summary>One thing that is wrong with a document.</summary>
  public sealed class ZolFault
  {
    /// <summary>The kind of fault; <see cref="ErrorCode.None"/> for a warning.</summary>
    public ErrorCode Code { get; private set; }

    /// <summary>Whether it is lawful, and yet seldom meant.</summary>
    public bool IsWarning { get; private set; }

    /// <summary>
    /// What was wrong, for programs, as in above-bound; null if nothing is to be said.
    /// </summary>
    public string Rule { get; private set; }

    /// <summary>Where it stands, from 1; 0 if that is not known.</summary>
    public int Line { get; private set; }

    /// <summary>Where it stands in its line, in characters from 1; 0 if that is not known.</summary>
    public int Column { get; private set; }

    /// <summary>Where it stands in the document, in bytes from 0.</summary>
    public long Offset { get; private set; }

    /// <summary>How many bytes there are concerned.</summary>
    public long Length { get; private set; }

    /// <summary>
    /// The element or attribute, as in Zol/Color[3]/ColorSpaceCIELab/L; null if it has no path.
    /// </summary>
    public string Path { get; private set; }

    /// <summary>The element or attribute that was at hand; null if there was none.</summary>
    public string Item { get; private set; }

    /// <summary>The value as it stood; null if there is none.</summary>
    public string Value { get; private set; }

    /// <summary>What may stand there, in words; null if nothing is to be said.</summary>
    public string Expected { get; private set; }

    /// <summary>One sentence for people.</summary>
    public string Message { get; private set; }

    internal ZolFault(Native.Fault fault)
    {
      Code = (ErrorCode)fault.Code;
      Line = (int)Math.Min(fault.Line, int.MaxValue);
      Column = (int)Math.Min(fault.Column, int.MaxValue);
      IsWarning = fault.IsWarning != 0;
      Offset = (long)fault.Offset;
      Length = (long)fault.Length;
      Rule = Text.Read(fault.Rule);
      Path = Text.Read(fault.Path);
      Item = Text.Read(fault.Item);
      Value = Text.Read(fault.Found);
      Expected = Text.Read(fault.Expected);
      Message = Text.Read(fault.Message) ?? "";
    }

    internal ZolFault(ErrorCode code, string path, string value, string expected)
    {
      Code = code;
      Path = path;
      Value = value;
      Expected = expected;
      Message = lmx.get_error_description((elmx_error)code);
      if (value != null) Message += ": '" + value + "'";
      if (expected != null) Message += ", expected " + expected;
    }

    /// <summary>The path, the line and the message, as far as they are known.</summary>
    public override string ToString()
    {
      string line = Line == 0 ? "" : "line " + Line.ToString(CultureInfo.InvariantCulture) + ": ";
      return Path == null ? line + Message : Path + ": " + line + Message;
    }
  }

  /// <summary>
  /// A document that could not be opened or saved, or a value that it cannot hold. Nothing was
  /// changed by what threw it.
  /// </summary>
  public class ZolException : Exception
  {
    private static readonly IReadOnlyList<ZolFault> none = Array.Empty<ZolFault>();

    /// <summary>An exception that says nothing.</summary>
    public ZolException() { Faults = none; }

    /// <summary>An exception with a message.</summary>
    public ZolException(string message) : base(message) { Faults = none; }

    /// <summary>An exception with a message and what it comes from.</summary>
    public ZolException(string message, Exception innerException) : base(message, innerException)
    {
      Faults = none;
    }

    internal ZolException(FileReport report)
      : base(report.Faults.Count == 0 ? report.Message : report.Faults[0].ToString())
    {
      Code = (ErrorCode)report.Code;
      ArchiveCause = report.ArchiveCause;
      Faults = (IReadOnlyList<ZolFault>)report.Faults;
    }

    internal ZolException(ZolFault fault) : base(fault.ToString())
    {
      Code = fault.Code;
      Faults = new[] { fault };
    }

    /// <summary>Why it failed: the code of the first fault.</summary>
    public ErrorCode Code { get; private set; }

    /// <summary>All that is wrong, in the order of the document.</summary>
    public IReadOnlyList<ZolFault> Faults { get; private set; }

    /// <summary>The number of the archive's failure; 0 if there was none.</summary>
    public int ArchiveCause { get; private set; }

    /// <summary>The line of the first fault; 0 if no text was read.</summary>
    public int Line { get { return Faults.Count == 0 ? 0 : Faults[0].Line; } }

    /// <summary>Where the first fault stands in the document; null if it has no path.</summary>
    public string Path { get { return Faults.Count == 0 ? null : Faults[0].Path; } }

    /// <summary>The element or attribute of the first fault; null if there is none.</summary>
    public string Item { get { return Faults.Count == 0 ? null : Faults[0].Item; } }

    /// <summary>The value that was refused; null if it was none.</summary>
    public string Value { get { return Faults.Count == 0 ? null : Faults[0].Value; } }

    /// <summary>What may stand there, in words; null if nothing is to be said.</summary>
    public string Expected { get { return Faults.Count == 0 ? null : Faults[0].Expected; } }
  }
}
