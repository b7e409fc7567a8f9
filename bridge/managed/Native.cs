using System;
using System.Runtime.InteropServices;

namespace ZolModule
{
  internal static partial class Native
  {
    internal const string Library = "zol";

    // On 32-bit Windows the runtime itself looks for the decorated name, underscore and all.
#if ZOL_STDCALL_NAMES
    internal const string Prefix = "CSharp_";
    private const string Register = "SWIGRegister";
#else
    internal const string Prefix = "_CSharp_";
    private const string Register = "_SWIGRegister";
#endif

    internal delegate void ExceptionCallback(IntPtr message);
    internal delegate void ArgumentCallback(IntPtr message, IntPtr parameter);
    internal delegate IntPtr StringCallback(IntPtr text);

    [DllImport(Library, EntryPoint = Register + "ExceptionCallbacks_ZolModule")]
    private static extern void RegisterExceptions(
      ExceptionCallback application, ExceptionCallback arithmetic, ExceptionCallback divideByZero,
      ExceptionCallback indexOutOfRange, ExceptionCallback invalidCast,
      ExceptionCallback invalidOperation, ExceptionCallback io, ExceptionCallback nullReference,
      ExceptionCallback outOfMemory, ExceptionCallback overflow, ExceptionCallback system);

    [DllImport(Library, EntryPoint = Register + "ExceptionArgumentCallbacks_ZolModule")]
    private static extern void RegisterArguments(
      ArgumentCallback argument, ArgumentCallback argumentNull,
      ArgumentCallback argumentOutOfRange);

    [DllImport(Library, EntryPoint = Register + "StringCallback_ZolModule")]
    private static extern void RegisterText(StringCallback text);

    [DllImport(Library)]
    internal static extern uint zol_text_bytes(IntPtr text);
    [DllImport(Library)]
    internal static extern void zol_text_free(IntPtr text);

    [StructLayout(LayoutKind.Sequential)]
    internal struct Report
    {
      internal int Code;
      internal int Line;
      internal int ArchiveCause;
      internal IntPtr Item;
      internal IntPtr Message;
    }

    [DllImport(Library, CharSet = CharSet.Unicode)]
    internal static extern int zol_open_file(HandleRef zol, string path, out Report report);
    [DllImport(Library, CharSet = CharSet.Unicode)]
    internal static extern int zol_save_file(HandleRef zol, string path, out Report report);
    [DllImport(Library, CharSet = CharSet.Unicode)]
    internal static extern int zol_load_file(HandleRef zol, string path, out Report report);
    [DllImport(Library, CharSet = CharSet.Unicode)]
    internal static extern int zol_write_file(HandleRef zol, string path, out Report report);

    // The native side keeps the addresses of these for as long as the process lives.
    private static readonly ExceptionCallback exception =
      message => Pending.Raise(new ApplicationException(Text.Read(message)));
    private static readonly ArgumentCallback argument =
      (message, name) => Pending.Raise(new ArgumentException(Text.Read(message), Text.Read(name)));
    private static readonly ArgumentCallback argumentNull =
      (message, name) =>
        Pending.Raise(new ArgumentNullException(Text.Read(name), Text.Read(message)));
    private static readonly ArgumentCallback argumentOutOfRange =
      (message, name) =>
        Pending.Raise(new ArgumentOutOfRangeException(Text.Read(name), Text.Read(message)));
    private static readonly StringCallback text = address => address;

    static Native()
    {
      RegisterExceptions(exception, exception, exception, exception, exception, exception,
                         exception, exception, exception, exception, exception);
      RegisterArguments(argument, argumentNull, argumentOutOfRange);
      RegisterText(text);
    }
  }

  /// <summary>The exception that a callback left for the caller of the function.</summary>
  internal static class Pending
  {
    [ThreadStatic] private static Exception exception;

    internal static void Raise(Exception raised) { exception = raised; }

    internal static void Check()
    {
      Exception raised = exception;
      if (raised == null) return;
      exception = null;
      throw raised;
    }

    internal static T Checked<T>(T result)
    {
      Check();
      return result;
    }
  }
}
