#nullable enable
using System;
using System.Collections;
using System.Collections.Generic;
using Zol.Interop;

namespace Zol;

/// <summary>A list of objects in a document, in its order.</summary>
/// <typeparam name="T">The class of the objects, or what their classes have in common.</typeparam>
/// <remarks>
/// It shows the document as it is. What is added is copied; what is removed is no more. Walking it
/// makes a proxy for each object, and stops with an <see cref="InvalidOperationException"/> if the
/// list becomes longer or shorter meanwhile.
/// </remarks>
public sealed class ZolList<T> : IList<T>, IReadOnlyList<T> where T : ZolObject
{
    private readonly ZolObject holder;
    private readonly uint row;

    internal ZolList(ZolObject holder, uint row)
    {
        this.holder = holder;
        this.row = row;
    }

    /// <summary>The number of objects.</summary>
    public int Count
    {
        get
        {
            uint count = Rows.zol_count(holder.Live(), row);
            GC.KeepAlive(holder);
            return (int)count;
        }
    }

    bool ICollection<T>.IsReadOnly => false;

    /// <summary>The object at an index; to set it replaces that one by a copy.</summary>
    /// <param name="index">From 0.</param>
    /// <exception cref="ArgumentOutOfRangeException">The list does not have it.</exception>
    public T this[int index]
    {
        get => At(index) ?? throw new ArgumentOutOfRangeException(nameof(index));
        set
        {
            if (value is null) throw new ArgumentNullException(nameof(value));
            T old = this[index];
            if (old.Equals(value)) return;
            // Behind the old one first, so that nothing is lost if it cannot stand there.
            _ = Insert(index + 1, value);
            RemoveAt(index);
        }
    }

    /// <summary>Adds a copy of an object.</summary>
    /// <param name="item">An object of its own, or of this or another document.</param>
    /// <returns>The copy, which is part of the document.</returns>
    /// <exception cref="ArgumentException">Its class cannot stand in this list.</exception>
    public T Add(T item) => Insert(Count, item);

    /// <summary>Adds copies of objects.</summary>
    /// <param name="items">The objects, which may be of this list.</param>
    public void AddRange(IEnumerable<T> items)
    {
        if (items is null) throw new ArgumentNullException(nameof(items));
        foreach (T item in new List<T>(items)) _ = Add(item);
    }

    /// <summary>Inserts a copy of an object.</summary>
    /// <param name="index">What the copy will have, up to <see cref="Count"/>.</param>
    /// <param name="item">An object of its own, or of this or another document.</param>
    /// <returns>The copy, which is part of the document.</returns>
    /// <exception cref="ArgumentException">Its class cannot stand in this list.</exception>
    public T Insert(int index, T item)
    {
        if (item is null) throw new ArgumentNullException(nameof(item));
        if ((uint)index > (uint)Count) throw new ArgumentOutOfRangeException(nameof(index));
        IntPtr copy = Rows.zol_insert_copy(holder.Live(), row, (uint)index, item.Live());
        if (copy == IntPtr.Zero) throw ZolObject.Misplaced(item);
        GC.KeepAlive(item);
        holder.Lifetime.Grow(checked((long)Native.zol_memory(copy)));
        T added = holder.Wrap<T>(copy, Rows.zol_type_of(copy), row);
        GC.KeepAlive(holder);
        return added;
    }

    /// <summary>Removes the object at an index.</summary>
    /// <param name="index">From 0.</param>
    /// <exception cref="ArgumentOutOfRangeException">The list does not have it.</exception>
    public unsafe void RemoveAt(int index)
    {
        uint type;
        IntPtr child = Rows.zol_child(holder.Live(), row, (uint)index, &type);
        if (Rows.zol_remove(holder.Live(), row, (uint)index) == 0)
        {
            throw new ArgumentOutOfRangeException(nameof(index));
        }
        holder.Lifetime.TakeOut(child, Place.Itself);
        GC.KeepAlive(holder);
    }

    /// <summary>Removes an object, if it is in the list.</summary>
    /// <param name="item">The object itself, not one that holds the same.</param>
    /// <returns>Whether it was.</returns>
    public bool Remove(T item)
    {
        int index = IndexOf(item);
        if (index < 0) return false;
        RemoveAt(index);
        return true;
    }

    /// <summary>Removes the objects that are chosen.</summary>
    /// <param name="match">Tells whether one is.</param>
    /// <returns>How many were.</returns>
    public int RemoveAll(Predicate<T> match)
    {
        if (match is null) throw new ArgumentNullException(nameof(match));
        int before = Count;
        for (int i = before - 1; i >= 0; --i)
        {
            if (match(this[i])) RemoveAt(i);
        }
        return before - Count;
    }

    /// <summary>Removes all objects.</summary>
    public void Clear()
    {
        IntPtr self = holder.Live();
        _ = Rows.zol_unset(self, row);
        holder.Lifetime.TakeOut(self, row);
        GC.KeepAlive(holder);
    }

    /// <summary>Where an object is in the list; -1 if it is not.</summary>
    /// <param name="item">The object itself, not one that holds the same.</param>
    /// <returns>The index.</returns>
    public int IndexOf(T item)
    {
        if (item is null || item.IsRemoved || item.Lifetime != holder.Lifetime) return -1;
        int count = Count;
        for (int i = 0; i < count; ++i)
        {
            if (item.Equals(At(i))) return i;
        }
        return -1;
    }

    /// <summary>Whether an object is in the list.</summary>
    /// <param name="item">The object itself, not one that holds the same.</param>
    /// <returns>Whether it is.</returns>
    public bool Contains(T item) => IndexOf(item) >= 0;

    /// <summary>Copies the proxies of the objects.</summary>
    /// <param name="array">Has room for all of them.</param>
    /// <param name="arrayIndex">Where the first goes.</param>
    public void CopyTo(T[] array, int arrayIndex)
    {
        if (array is null) throw new ArgumentNullException(nameof(array));
        if ((uint)arrayIndex > (uint)array.Length || array.Length - arrayIndex < Count)
        {
            throw new ArgumentException("The array has no room for them.", nameof(array));
        }
        foreach (T item in this) array[arrayIndex++] = item;
    }

    /// <summary>Walks the list.</summary>
    /// <returns>An enumerator that stands before the first object.</returns>
    public Enumerator GetEnumerator() => new(this);

    IEnumerator<T> IEnumerable<T>.GetEnumerator() => GetEnumerator();
    IEnumerator IEnumerable.GetEnumerator() => GetEnumerator();
    void ICollection<T>.Add(T item) => _ = Add(item);
    void IList<T>.Insert(int index, T item) => _ = Insert(index, item);

    /// <inheritdoc/>
    public override string ToString() => $"{Count} of {typeof(T).Name}";

    private T? At(int index) => index < 0 ? null : holder.GetChild<T>(row, (uint)index);

    /// <summary>Walks a list.</summary>
    public struct Enumerator : IEnumerator<T>
    {
        private readonly ZolList<T> list;
        private readonly int count;
        private int index;
        private T? current;

        internal Enumerator(ZolList<T> list)
        {
            this.list = list;
            count = list.Count;
            index = -1;
        }

        /// <summary>The object at hand.</summary>
        public readonly T Current => current ?? throw new InvalidOperationException();

        readonly object IEnumerator.Current => Current;

        /// <summary>Goes to the next object.</summary>
        /// <returns>False if there is none.</returns>
        /// <exception cref="InvalidOperationException">
        /// The list has become longer or shorter.
        /// </exception>
        public bool MoveNext()
        {
            if (list.Count != count)
            {
                throw new InvalidOperationException("The list has become longer or shorter.");
            }
            current = ++index < count ? list.At(index) : null;
            return current is not null;
        }

        /// <summary>Goes back before the first object.</summary>
        public void Reset() => index = -1;

        /// <summary>Nothing needs to be let go of.</summary>
        public readonly void Dispose()
        {
        }
    }
}
