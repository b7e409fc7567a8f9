#nullable enable
using System;
using System.Collections;
using System.Collections.Generic;
using System.IO;
using System.Xml;
using Zol.Interop;

namespace Zol;

/// <summary>A list of values in a document: texts, dates or foreign elements, in its order.</summary>
/// <typeparam name="T">What the values are.</typeparam>
/// <remarks>It shows the document as it is. Walking it takes all values at once.</remarks>
public abstract class ZolValueList<T> : IList<T>, IReadOnlyList<T>
{
    private protected ZolValueList(ZolObject holder, uint row)
    {
        Holder = holder;
        Row = row;
    }

    /// <summary>The number of values.</summary>
    public int Count
    {
        get
        {
            uint count = Rows.zol_count(Holder.Live(), Row);
            GC.KeepAlive(Holder);
            return (int)count;
        }
    }

    bool ICollection<T>.IsReadOnly => false;

    private protected ZolObject Holder { get; }

    private protected uint Row { get; }

    /// <summary>The value at an index.</summary>
    /// <param name="index">From 0.</param>
    /// <exception cref="ArgumentOutOfRangeException">The list does not have it.</exception>
    /// <exception cref="ZolException">The value cannot stand there.</exception>
    public T this[int index]
    {
        get => Get(Below(index, Count));
        set => Put(Below(index, Count), value);
    }

    /// <summary>Adds a value.</summary>
    /// <param name="item">The value.</param>
    /// <exception cref="ZolException">It cannot stand there.</exception>
    public void Add(T item) => Insert(Count, item);

    /// <summary>Adds values.</summary>
    /// <param name="items">The values.</param>
    /// <exception cref="ZolException">One cannot stand there; those before it were added.</exception>
    public void AddRange(IEnumerable<T> items)
    {
        if (items is null) throw new ArgumentNullException(nameof(items));
        foreach (T item in new List<T>(items)) Add(item);
    }

    /// <summary>Inserts a value.</summary>
    /// <param name="index">What it will have, up to <see cref="Count"/>.</param>
    /// <param name="item">The value.</param>
    /// <exception cref="ZolException">It cannot stand there.</exception>
    public void Insert(int index, T item)
    {
        if (item is null) throw new ArgumentNullException(nameof(item));
        New(Below(index, Count + 1), item);
    }

    /// <summary>Removes the value at an index.</summary>
    /// <param name="index">From 0.</param>
    /// <exception cref="ArgumentOutOfRangeException">The list does not have it.</exception>
    public void RemoveAt(int index)
    {
        _ = Rows.zol_remove(Holder.Live(), Row, Below(index, Count));
        GC.KeepAlive(Holder);
    }

    /// <summary>Removes the first value of those that are equal to one.</summary>
    /// <param name="item">The value.</param>
    /// <returns>Whether there was one.</returns>
    public bool Remove(T item)
    {
        int index = IndexOf(item);
        if (index < 0) return false;
        RemoveAt(index);
        return true;
    }

    /// <summary>Removes all values.</summary>
    public void Clear()
    {
        _ = Rows.zol_unset(Holder.Live(), Row);
        GC.KeepAlive(Holder);
    }

    /// <summary>Where the first is of the values that are equal to one; -1 if there is none.</summary>
    /// <param name="item">The value.</param>
    /// <returns>The index.</returns>
    public int IndexOf(T item) => Array.IndexOf(ToArray(), item);

    /// <summary>Whether the list has the value.</summary>
    /// <param name="item">The value.</param>
    /// <returns>Whether it has.</returns>
    public bool Contains(T item) => IndexOf(item) >= 0;

    /// <summary>Copies the values.</summary>
    /// <param name="array">Has room for all of them.</param>
    /// <param name="arrayIndex">Where the first goes.</param>
    public void CopyTo(T[] array, int arrayIndex) => ToArray().CopyTo(array, arrayIndex);

    /// <summary>All values at once.</summary>
    /// <returns>A new array.</returns>
    public abstract T[] ToArray();

    /// <summary>Walks the values as they are now.</summary>
    /// <returns>An enumerator that stands before the first one.</returns>
    public IEnumerator<T> GetEnumerator() => ((IEnumerable<T>)ToArray()).GetEnumerator();

    IEnumerator IEnumerable.GetEnumerator() => GetEnumerator();

    /// <inheritdoc/>
    public override string ToString() => $"{Count} of {typeof(T).Name}";

    private protected abstract T Get(uint index);
    private protected abstract void Put(uint index, T value);
    private protected abstract void New(uint index, T value);

    private static uint Below(int index, int size) => (uint)index < (uint)size
        ? (uint)index : throw new ArgumentOutOfRangeException(nameof(index));
}

internal sealed class TextList(ZolObject holder, uint row) : ZolValueList<string>(holder, row)
{
    public override string[] ToArray()
    {
        string[] all = Text.TakeAll(Rows.zol_texts(Holder.Live(), Row));
        GC.KeepAlive(Holder);
        return all;
    }

    private protected override string Get(uint index) => Holder.ReadText(Row, index, out _);

    private protected override void Put(uint index, string value) =>
        Holder.WriteText(Row, index, value ?? throw new ArgumentNullException(nameof(value)), false);

    private protected override void New(uint index, string value) =>
        Holder.WriteText(Row, index, value, true);
}

internal sealed class MomentList(ZolObject holder, uint row) : ZolValueList<ZolDateTime>(holder, row)
{
    public override unsafe ZolDateTime[] ToArray()
    {
        var moments = new Moment[Count];
        fixed (Moment* first = moments)
        {
            _ = Rows.zol_moments(Holder.Live(), Row, first, (uint)moments.Length);
        }
        GC.KeepAlive(Holder);
        return Array.ConvertAll(moments, moment => new ZolDateTime(moment));
    }

    private protected override unsafe ZolDateTime Get(uint index)
    {
        Moment moment;
        _ = Rows.zol_get_moment(Holder.Live(), Row, index, &moment);
        GC.KeepAlive(Holder);
        return new ZolDateTime(moment);
    }

    private protected override unsafe void Put(uint index, ZolDateTime value)
    {
        Moment moment = value.ToMoment();
        Judge(Rows.zol_set_moment(Holder.Live(), Row, index, &moment), index, value);
    }

    private protected override unsafe void New(uint index, ZolDateTime value)
    {
        Moment moment = value.ToMoment();
        Judge(Rows.zol_insert_moment(Holder.Live(), Row, index, &moment), index, value);
    }

    private void Judge(int code, uint index, ZolDateTime value)
    {
        GC.KeepAlive(Holder);
        if (code != 0) throw Holder.Refused(code, Row, value.ToString(), index);
    }
}

/// <summary>An element of another format, kept whole in a document.</summary>
public sealed class ForeignElement : IEquatable<ForeignElement>
{
    /// <summary>An element from its text.</summary>
    /// <param name="text">One element that declares the namespaces it uses.</param>
    /// <exception cref="ArgumentException">The text is something else.</exception>
    public ForeignElement(string text)
    {
        Text = text ?? throw new ArgumentNullException(nameof(text));
        try
        {
            // Twice the outermost element would be two in the document.
            using var reader = XmlReader.Create(
                new StringReader(text), new XmlReaderSettings { DtdProcessing = DtdProcessing.Prohibit });
            _ = reader.MoveToContent();
            FullName = reader.Name;
            NamespaceUri = reader.NamespaceURI;
            while (reader.Read())
            {
            }
        }
        catch (XmlException fault)
        {
            throw new ArgumentException("This is not one element: " + fault.Message, nameof(text), fault);
        }
    }

    internal ForeignElement(string fullName, string namespaceUri, string text)
    {
        FullName = fullName;
        NamespaceUri = namespaceUri;
        Text = text;
    }

    /// <summary>The name with its prefix.</summary>
    public string FullName { get; }

    /// <summary>The namespace; empty for none.</summary>
    public string NamespaceUri { get; }

    /// <summary>The whole element as it is written.</summary>
    public string Text { get; }

    /// <summary>Whether the texts are the same.</summary>
    /// <param name="other">Another one, or null.</param>
    /// <returns>Whether they are.</returns>
    public bool Equals(ForeignElement? other) => other is not null && Text == other.Text;

    /// <inheritdoc/>
    public override bool Equals(object? obj) => Equals(obj as ForeignElement);

    /// <inheritdoc/>
    public override int GetHashCode() => StringComparer.Ordinal.GetHashCode(Text);

    /// <inheritdoc/>
    public override string ToString() => Text;
}

internal sealed class ForeignList(ZolObject holder, uint row)
    : ZolValueList<ForeignElement>(holder, row)
{
    public override ForeignElement[] ToArray()
    {
        var all = new ForeignElement[Count];
        for (uint i = 0; i < all.Length; ++i) all[i] = Get(i);
        return all;
    }

    private protected override unsafe ForeignElement Get(uint index)
    {
        IntPtr name, uri;
        IntPtr text = Rows.zol_any_text(Holder.Live(), index, &name, &uri);
        GC.KeepAlive(Holder);
        return new ForeignElement(Text.TakeNarrow(name), Text.TakeNarrow(uri), Text.TakeNarrow(text));
    }

    private protected override void Put(uint index, ForeignElement value)
    {
        New(index + 1, value ?? throw new ArgumentNullException(nameof(value)));
        RemoveAt((int)index);
    }

    private protected override void New(uint index, ForeignElement value)
    {
        _ = Native.Revision_insert_any(new(Holder, Holder.Live()), index, Text.Narrow(value.Text));
        GC.KeepAlive(Holder);
    }
}
