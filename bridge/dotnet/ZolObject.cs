#nullable enable
using System;
using System.Globalization;
using System.Runtime.CompilerServices;
using System.Text;
using Zol.Interop;

namespace Zol;

/// <summary>Which native object a proxy stands for, and where that is.</summary>
internal readonly struct Link(IntPtr handle, NativeOwner owner, ZolObject? parent, uint place)
{
    internal readonly IntPtr Handle = handle;
    internal readonly NativeOwner Owner = owner;
    internal readonly ZolObject? Parent = parent;
    internal readonly uint Place = place;
}

/// <summary>
/// Something in a document, or an object of its own that is still to be put into one.
/// </summary>
/// <remarks>
/// <para>
/// An object of this kind stands for one in native memory and is cheap: ask for it again rather than
/// keep it. Two that stand for the same are equal. It keeps the whole document alive.
/// </para>
/// <para>
/// To assign an object, or to add it to a list, copies it. What <see cref="ZolList{T}.Add"/> gives
/// is the copy, which is part of the document; the object that was added stays what it was.
/// </para>
/// <para>
/// What was removed or replaced is no more, nor is what was in it: to use it then throws an
/// <see cref="ObjectDisposedException"/>, as does anything of a document that was disposed of.
/// <see cref="IsRemoved"/> tells.
/// </para>
/// <para>A document, with all that is in it, belongs to one thread at a time.</para>
/// </remarks>
public abstract class ZolObject : IEquatable<ZolObject>
{
    private const int Gone = -2;

    private readonly IntPtr handle;
    private readonly NativeOwner owner;
    private readonly ZolObject? parent;
    private readonly uint place;
    private int version;

    private protected ZolObject(uint type)
    {
        handle = Rows.Given(Native.zol_new(type));
        owner = new NativeOwner(handle, null);
    }

    private protected ZolObject(in Link link)
    {
        handle = link.Handle;
        owner = link.Owner;
        parent = link.Parent;
        place = link.Place;
        version = owner.Version;
    }

    // --- What a program may ask of every object ----------------------------------------------

    /// <summary>What this is part of; null for a document and for an object of its own.</summary>
    public ZolObject? Parent
    {
        get
        {
            Live();
            return parent;
        }
    }

    /// <summary>The document that this is part of; null for what is in none.</summary>
    public ZolDocument? Document
    {
        get
        {
            Live();
            return Root as ZolDocument;
        }
    }

    /// <summary>
    /// Where this stands, as in Zol/Color[3]/ColorSpaceCIELab. Searches the document.
    /// </summary>
    public string Path => PathOf(-1, 0) ?? "";

    /// <summary>Whether this was removed or replaced, or its document disposed of.</summary>
    public bool IsRemoved => !IsAlive();

    /// <summary>Whether both stand for the same object.</summary>
    /// <param name="other">Another one, or null.</param>
    /// <returns>False too if either was removed, unless they are one.</returns>
    public bool Equals(ZolObject? other) =>
        ReferenceEquals(this, other) ||
        (other is not null && handle == other.handle && owner == other.owner && IsAlive() &&
         other.IsAlive());

    /// <inheritdoc/>
    public override bool Equals(object? obj) => obj is ZolObject other && Equals(other);

    /// <inheritdoc/>
    public override int GetHashCode() => handle.GetHashCode();

    /// <inheritdoc/>
    public override string ToString() => IsRemoved ? Removed(GetType().Name) : GetType().Name;

    // --- Whether it is still there -----------------------------------------------------------

    internal NativeOwner Lifetime => owner;

    private ZolObject Root
    {
        get
        {
            ZolObject root = this;
            while (root.parent is not null) root = root.parent;
            return root;
        }
    }

    /// <summary>The address, good for one call; whoever makes it keeps this alive until then.</summary>
    [MethodImpl(MethodImplOptions.AggressiveInlining)]
    internal IntPtr Live()
    {
        if (version != owner.Version) ThrowIfGone();
        return handle;
    }

    private bool IsAlive()
    {
        if (owner.IsClosed || version == Gone) return false;
        if (version == owner.Version) return true;
        bool isGone = owner.IsGone(handle, Interop.Place.Itself, version);
        if (!isGone && parent is not null)
        {
            isGone = !parent.IsAlive() || owner.IsGone(parent.handle, place, version) ||
                     owner.IsGone(parent.handle, Interop.Place.AllRows, version);
        }
        version = isGone ? Gone : owner.Version;
        return !isGone;
    }

    private void ThrowIfGone()
    {
        if (IsAlive()) return;
        throw new ObjectDisposedException(
            GetType().Name, owner.IsClosed ? "The document was disposed of."
                                           : "It was removed from the document, or replaced.");
    }

    // --- Numbers and the like ----------------------------------------------------------------

    private protected unsafe double GetNumber(uint row)
    {
        double value;
        _ = Rows.zol_get_number(Live(), row, &value);
        GC.KeepAlive(this);
        return value;
    }

    private protected unsafe double? GetOptionalNumber(uint row)
    {
        double value;
        bool isSet = Rows.zol_get_number(Live(), row, &value) != 0;
        GC.KeepAlive(this);
        return isSet ? value : null;
    }

    private protected void SetNumber(uint row, double? value)
    {
        if (value is not double number)
        {
            Unset(row);
            return;
        }
        int before = ChosenBefore();
        int code = Rows.zol_set_number(Live(), row, number);
        if (code != 0) throw Refused(code, row, number.ToString("R", CultureInfo.InvariantCulture));
        TakeOutChosen(before);
        GC.KeepAlive(this);
    }

    private protected unsafe int GetInteger(uint row)
    {
        long value;
        _ = Rows.zol_get_integer(Live(), row, &value);
        GC.KeepAlive(this);
        return unchecked((int)value);
    }

    private protected unsafe int? GetOptionalInteger(uint row)
    {
        long value;
        bool isSet = Rows.zol_get_integer(Live(), row, &value) != 0;
        GC.KeepAlive(this);
        return isSet ? unchecked((int)value) : null;
    }

    private protected void SetInteger(uint row, int? value)
    {
        if (value is not int number)
        {
            Unset(row);
            return;
        }
        int before = ChosenBefore();
        int code = Rows.zol_set_integer(Live(), row, number);
        if (code != 0) throw Refused(code, row, number.ToString(CultureInfo.InvariantCulture));
        TakeOutChosen(before);
        GC.KeepAlive(this);
    }

    private protected bool GetTruth(uint row) => GetInteger(row) != 0;

    private protected bool? GetOptionalTruth(uint row) =>
        GetOptionalInteger(row) is int value ? value != 0 : null;

    private protected void SetTruth(uint row, bool? value) =>
        SetInteger(row, value is bool truth ? (truth ? 1 : 0) : null);

    // --- Texts -------------------------------------------------------------------------------

    private protected string GetText(uint row) => ReadText(row, 0, out _);

    private protected string? GetOptionalText(uint row)
    {
        string text = ReadText(row, 0, out bool isSet);
        return isSet ? text : null;
    }

    internal unsafe string ReadText(uint row, uint index, out bool isThere)
    {
        Rows.TextView view;
        isThere = Rows.zol_get_text(Live(), row, index, &view) != 0;
        string text = view.Utf8 != null ? Encoding.UTF8.GetString(view.Utf8, checked((int)view.Size))
                                        : Interop.Text.Take(view.Wide);
        GC.KeepAlive(this);
        return text;
    }

    private protected void SetText(uint row, string? value)
    {
        if (value is null)
        {
            Unset(row);
            return;
        }
        int before = ChosenBefore();
        WriteText(row, 0, value, isNew: false);
        TakeOutChosen(before);
    }

    internal unsafe void WriteText(uint row, uint index, string text, bool isNew)
    {
        byte[] utf8;
        try
        {
            utf8 = StrictUtf8.GetBytes(text);
        }
        catch (EncoderFallbackException)
        {
            throw Refused((int)ErrorCode.BadCharEncoding, row, null, index);
        }
        // An empty array has no address, and an empty text needs one.
        fixed (byte* bytes = utf8.Length == 0 ? new byte[1] : utf8)
        {
            uint size = (uint)utf8.Length;
            int code = isNew ? Rows.zol_insert_text(Live(), row, index, bytes, size)
                             : Rows.zol_set_text(Live(), row, index, bytes, size);
            if (code != 0) throw Refused(code, row, text, index);
        }
        owner.Grow(utf8.Length);
        GC.KeepAlive(this);
    }

    private static readonly UTF8Encoding StrictUtf8 = new(false, throwOnInvalidBytes: true);

    // --- Dates and bytes ---------------------------------------------------------------------

    private protected ZolDateTime GetMoment(uint row) => GetOptionalMoment(row) ?? default;

    private protected unsafe ZolDateTime? GetOptionalMoment(uint row)
    {
        Moment moment;
        bool isSet = Rows.zol_get_moment(Live(), row, 0, &moment) != 0;
        GC.KeepAlive(this);
        return isSet ? new ZolDateTime(moment) : null;
    }

    private protected unsafe void SetMoment(uint row, ZolDateTime? value)
    {
        if (value is not ZolDateTime date)
        {
            Unset(row);
            return;
        }
        Moment moment = date.ToMoment();
        int code = Rows.zol_set_moment(Live(), row, 0, &moment);
        if (code != 0) throw Refused(code, row, date.ToString());
        GC.KeepAlive(this);
    }

    private protected unsafe ReadOnlyMemory<byte> GetBytes(uint row)
    {
        uint size;
        IntPtr bytes = Rows.zol_get_bytes(Live(), row, &size);
        byte[] copy = new ReadOnlySpan<byte>((void*)bytes, checked((int)size)).ToArray();
        GC.KeepAlive(this);
        return copy;
    }

    private protected unsafe void SetBytes(uint row, ReadOnlyMemory<byte> value)
    {
        fixed (byte* bytes = value.Span)
        {
            int code = Rows.zol_set_bytes(Live(), row, bytes, (uint)value.Length);
            if (code != 0) throw Refused(code, row, null);
        }
        owner.Grow(value.Length);
        GC.KeepAlive(this);
    }

    // --- Children ----------------------------------------------------------------------------

    /// <summary>What the row or list has there, as an object of the class that it is of.</summary>
    internal unsafe T? GetChild<T>(uint row, uint index) where T : ZolObject
    {
        uint type;
        IntPtr child = Rows.zol_child(Live(), row, index, &type);
        GC.KeepAlive(this);
        return child == IntPtr.Zero ? null : Wrap<T>(child, type, row);
    }

    internal T Wrap<T>(IntPtr child, uint type, uint row) where T : ZolObject =>
        (T)Classes.Wrap(type, new Link(child, owner, this, row));

    private protected T? GetChild<T>(uint row) where T : ZolObject => GetChild<T>(row, 0);

    /// <summary>A child that every object has; it counts as set from now on.</summary>
    private protected T GetRequired<T>(uint row, uint type) where T : ZolObject
    {
        if (GetChild<T>(row, 0) is T child) return child;
        IntPtr made = Rows.Given(Rows.zol_make_child(Live(), row, type));
        GC.KeepAlive(this);
        return Wrap<T>(made, type, row);
    }

    private protected T? GetNillable<T>(uint row) where T : ZolObject
    {
        T? child = GetChild<T>(row, 0);
        if (child is null || Rows.zol_is_nil(child.handle) == 0) return child;
        GC.KeepAlive(this);
        return null;
    }

    private protected void SetNillable(uint row, ZolObject? value, uint type)
    {
        if (value is not null)
        {
            SetChild(row, value);
            return;
        }
        IntPtr child = Rows.Given(Rows.zol_make_child(Live(), row, type));
        _ = Rows.zol_set_nil(child, 1);
        owner.TakeOut(child, Interop.Place.Itself);
        GC.KeepAlive(this);
    }

    private protected unsafe void SetChild(uint row, ZolObject? value)
    {
        if (value is null)
        {
            Unset(row);
            return;
        }
        uint type;
        IntPtr self = Live(), source = value.Live();
        IntPtr old = Rows.zol_child(self, row, 0, &type);
        if (old == source) return;
        int before = ChosenBefore();
        int code = Rows.zol_put_child(self, row, source);
        if (code == (int)ErrorCode.BadChoice) throw Misplaced(value);
        if (code != 0) throw Refused(code, row, null);
        if (old != IntPtr.Zero) owner.TakeOut(old, Interop.Place.Itself);
        TakeOutChosen(before);
        owner.Grow(checked((long)Native.zol_memory(Rows.zol_child(self, row, 0, &type))));
        GC.KeepAlive(value);
        GC.KeepAlive(this);
    }

    internal static ArgumentException Misplaced(ZolObject value) =>
        new($"A {value.GetType().Name} cannot stand there.", nameof(value));

    private unsafe void Unset(uint row)
    {
        uint type;
        IntPtr old = Rows.zol_child(Live(), row, 0, &type);
        if (Rows.zol_unset(Live(), row) == 0)
        {
            throw new ArgumentException("What is required cannot be taken away.");
        }
        if (old != IntPtr.Zero) owner.TakeOut(old, Interop.Place.Itself);
        GC.KeepAlive(this);
    }

    // --- Choices -----------------------------------------------------------------------------

    private protected virtual bool IsChoice => false;

    /// <summary>Which of the alternatives is held, from 1; 0 for none.</summary>
    private protected int GetChosen(int first)
    {
        int chosen = Rows.zol_chosen(Live());
        GC.KeepAlive(this);
        return chosen < 0 ? 0 : chosen - first + 1;
    }

    private int ChosenBefore() => IsChoice ? Rows.zol_chosen(Live()) : -1;

    /// <summary>What a choice held before is gone if it holds something else now.</summary>
    private void TakeOutChosen(int before)
    {
        if (before >= 0 && Rows.zol_chosen(Live()) != before) owner.TakeOut(handle, (uint)before);
    }

    // --- Faults ------------------------------------------------------------------------------

    private string? PathOf(int row, uint index)
    {
        IntPtr given = Rows.zol_path(Root.Live(), Live(), row, index);
        GC.KeepAlive(this);
        return given == IntPtr.Zero ? null : Interop.Text.TakeNarrow(given);
    }

    /// <summary>Why a value was refused.</summary>
    internal Exception Refused(int code, uint row, string? value, uint index = 0)
    {
        if (code == (int)ErrorCode.Unusable) return new OutOfMemoryException();
        IntPtr expected = Rows.zol_expected(row);
        return new ZolException(new ZolFault(
            (ErrorCode)code, PathOf((int)row, index), value,
            expected == IntPtr.Zero ? null : Interop.Text.TakeNarrow(expected)));
    }

    private protected static string Removed(string name) => name + " (removed)";

    private protected static string Describe(string name, params (string Name, object? Value)[] values)
    {
        var text = new StringBuilder(name);
        foreach ((string label, object? value) in values)
        {
            if (value is null) continue;
            _ = text.Append(' ').Append(label).Append(": ");
            _ = value is string ? text.Append('"').Append(value).Append('"')
                                : text.Append(Convert.ToString(value, CultureInfo.InvariantCulture));
        }
        return text.ToString();
    }
}
