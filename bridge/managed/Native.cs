using System;
using System.Globalization;
using System.Runtime.InteropServices;

namespace Zol.Interop
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

    [DllImport(Library, CharSet = CharSet.Unicode)]
    internal static extern int zol_load_file(HandleRef zol, string path, IntPtr report);
    [DllImport(Library, CharSet = CharSet.Unicode)]
    internal static extern int zol_write_file(HandleRef zol, string path, IntPtr report);

    /// <summary>One thing that is wrong, as native code tells it.</summary>
    [StructLayout(LayoutKind.Sequential)]
    internal struct Fault
    {
      internal int Code;
      internal uint IsWarning;
      internal ulong Line;
      internal ulong Column;
      internal ulong Offset;
      internal ulong Length;
      internal IntPtr Rule;
      internal IntPtr Path;
      internal IntPtr Item;
      internal IntPtr Found;
      internal IntPtr Expected;
      internal IntPtr Message;
    }

    [StructLayout(LayoutKind.Sequential)]
    internal struct Outcome
    {
      internal int Code;
      internal int ArchiveCause;
      internal IntPtr Faults;
      internal ulong FaultCount;
      internal IntPtr Message;
      internal IntPtr Bytes;
      internal ulong Size;
    }

    [DllImport(Library, CharSet = CharSet.Unicode)]
    internal static extern IntPtr zol_open(HandleRef zol, string path, byte[] bytes, ulong size);
    [DllImport(Library, CharSet = CharSet.Unicode)]
    internal static extern IntPtr zol_save(HandleRef zol, string path);
    [DllImport(Library)]
    internal static extern IntPtr zol_check(HandleRef self);
    [DllImport(Library)]
    internal static extern void zol_outcome_free(IntPtr outcome);

    [DllImport(Library)]
    private static extern uint zol_version();
    [DllImport(Library)]
    private static extern uint zol_model();
    [DllImport(Library)]
    internal static extern IntPtr zol_new(uint type);
    [DllImport(Library)]
    internal static extern uint zol_type_of(HandleRef self);
    [DllImport(Library)]
    internal static extern ulong zol_memory(IntPtr self);
    [DllImport(Library)]
    internal static extern void zol_delete(IntPtr self);
    [DllImport(Library)]
    internal static extern int zol_put_child(HandleRef holder, uint row, HandleRef value);
    [DllImport(Library)]
    internal static extern IntPtr zol_texts(HandleRef self, uint row);
    [DllImport(Library)]
    internal static extern uint zol_moments(HandleRef self, uint row, [Out] Moment[] values,
                                            uint max);
    [DllImport(Library)]
    internal static extern void zol_datetime_get(HandleRef datetime, out Moment value);
    [DllImport(Library)]
    internal static extern int zol_datetime_set(HandleRef datetime, ref Moment value);
    [DllImport(Library)]
    internal static extern uint zol_binary_bytes(HandleRef binary, [Out] byte[] bytes, uint max);
    [DllImport(Library)]
    internal static extern IntPtr zol_any_text(HandleRef revision, uint index, out IntPtr fullName,
                                               out IntPtr namespaceUri);
    [DllImport(Library)]
    internal static extern uint zol_spectrum_points(HandleRef spectrum, [Out] double[] wavelengths,
                                                    [Out] double[] values, uint max);
    [DllImport(Library)]
    internal static extern int zol_set_spectrum(HandleRef spectrum, double[] wavelengths,
                                                double[] values, uint count, out uint wrong);

    // The native side keeps the addresses of these for as long as the process lives.
    private static readonly ExceptionCallback exception =
      message => Pending.Raise(new InvalidOperationException(Text.Read(message)));
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
      RefuseOtherLibrary();
      RegisterExceptions(exception, exception, exception, exception, exception, exception,
                         exception, exception, exception, exception, exception);
      RegisterArguments(argument, argumentNull, argumentOutOfRange);
      RegisterText(text);
    }

    private static void RefuseOtherLibrary()
    {
      uint version, model;
      try
      {
        version = zol_version();
        model = zol_model();
      }
      catch (EntryPointNotFoundException)
      {
        throw new NotSupportedException("The native library zol is older than this assembly.");
      }
      if (model == Model) return;
      System.Version mine = typeof(Native).Assembly.GetName().Version;
      throw new NotSupportedException(string.Format(
        CultureInfo.InvariantCulture,
        "The native library zol {0}.{1}.{2} does not fit this assembly, which is {3}.",
        version >> 16, version >> 8 & 255, version & 255, mine.ToString(3)));
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
