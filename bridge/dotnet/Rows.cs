#nullable enable
using System;
using System.Runtime.InteropServices;

namespace Zol.Interop;

/// <summary>The functions that reach a row of any class by its number.</summary>
/// <remarks>
/// The first that is called is zol_new, which stands in Native: that refuses a library that does not
/// fit before anything else is asked of it. Those that do next to nothing, and neither wait nor call back, are called without telling the
/// collector, where a runtime can do that: it takes longer than they do.
/// </remarks>
internal static unsafe class Rows
{
    private const string Library = Native.Library;

    /// <summary>A text where it stands, or a copy of it.</summary>
    [StructLayout(LayoutKind.Sequential)]
    internal struct TextView
    {
        internal byte* Utf8;
        internal IntPtr Wide;
        internal ulong Size;
    }

#if NET5_0_OR_GREATER
    [SuppressGCTransition]
#endif
    [DllImport(Library)]
    internal static extern uint zol_get_number(IntPtr self, uint row, double* value);

#if NET5_0_OR_GREATER
    [SuppressGCTransition]
#endif
    [DllImport(Library)]
    internal static extern uint zol_get_integer(IntPtr self, uint row, long* value);

#if NET5_0_OR_GREATER
    [SuppressGCTransition]
#endif
    [DllImport(Library)]
    internal static extern uint zol_count(IntPtr self, uint row);

#if NET5_0_OR_GREATER
    [SuppressGCTransition]
#endif
    [DllImport(Library)]
    internal static extern int zol_chosen(IntPtr self);

#if NET5_0_OR_GREATER
    [SuppressGCTransition]
#endif
    [DllImport(Library)]
    internal static extern uint zol_is_nil(IntPtr self);

#if NET5_0_OR_GREATER
    [SuppressGCTransition]
#endif
    [DllImport(Library)]
    internal static extern IntPtr zol_child(IntPtr self, uint row, uint index, uint* type);

#if NET5_0_OR_GREATER
    [SuppressGCTransition]
#endif
    [DllImport(Library)]
    internal static extern uint zol_get_moment(IntPtr self, uint row, uint index, Moment* value);

    [DllImport(Library)]
    internal static extern uint zol_type_of(IntPtr self);
    [DllImport(Library)]
    internal static extern IntPtr zol_copy(IntPtr self);
    [DllImport(Library)]
    internal static extern int zol_put_child(IntPtr self, uint row, IntPtr value);
    [DllImport(Library)]
    internal static extern uint zol_set_nil(IntPtr self, uint isNil);
    [DllImport(Library)]
    internal static extern IntPtr zol_path(IntPtr root, IntPtr self, int row, uint index);
    [DllImport(Library)]
    internal static extern IntPtr zol_expected(uint row);
    [DllImport(Library)]
    internal static extern uint zol_unset(IntPtr self, uint row);
    [DllImport(Library)]
    internal static extern uint zol_remove(IntPtr self, uint row, uint index);
    [DllImport(Library)]
    internal static extern int zol_set_number(IntPtr self, uint row, double value);
    [DllImport(Library)]
    internal static extern int zol_set_integer(IntPtr self, uint row, long value);
    [DllImport(Library)]
    internal static extern uint zol_get_text(IntPtr self, uint row, uint index, TextView* view);
    [DllImport(Library)]
    internal static extern int zol_set_text(IntPtr self, uint row, uint index, byte* utf8, uint size);
    [DllImport(Library)]
    internal static extern int zol_insert_text(IntPtr self, uint row, uint index, byte* utf8,
                                               uint size);
    [DllImport(Library)]
    internal static extern IntPtr zol_texts(IntPtr self, uint row);
    [DllImport(Library)]
    internal static extern int zol_set_moment(IntPtr self, uint row, uint index, Moment* value);
    [DllImport(Library)]
    internal static extern int zol_insert_moment(IntPtr self, uint row, uint index, Moment* value);
    [DllImport(Library)]
    internal static extern uint zol_moments(IntPtr self, uint row, Moment* values, uint max);
    [DllImport(Library)]
    internal static extern IntPtr zol_get_bytes(IntPtr self, uint row, uint* size);
    [DllImport(Library)]
    internal static extern int zol_set_bytes(IntPtr self, uint row, byte* bytes, uint size);
    [DllImport(Library)]
    internal static extern IntPtr zol_any_text(IntPtr self, uint index, IntPtr* fullName,
                                               IntPtr* namespaceUri);
    [DllImport(Library)]
    internal static extern IntPtr zol_make_child(IntPtr self, uint row, uint type);
    [DllImport(Library)]
    internal static extern IntPtr zol_insert_copy(IntPtr self, uint row, uint index, IntPtr value);
    [DllImport(Library)]
    internal static extern uint zol_spectrum_points(IntPtr self, double* wavelengths, double* values,
                                                    uint max);
    [DllImport(Library)]
    internal static extern int zol_set_spectrum(IntPtr self, double* wavelengths, double* values,
                                                uint count, uint* wrong);
    [DllImport(Library)]
    internal static extern IntPtr zol_open(IntPtr self, IntPtr path, byte* bytes, ulong size);

    /// <summary>A handle that native code gave, unless it had no memory for what is behind it.</summary>
    internal static IntPtr Given(IntPtr handle) =>
        handle != IntPtr.Zero ? handle : throw new OutOfMemoryException();
}
