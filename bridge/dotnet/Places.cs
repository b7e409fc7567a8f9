#nullable enable
using System;
using System.Collections.Generic;

namespace Zol.Interop;

/// <content>
/// What was taken out of the object, which the proxies of what is in it ask about.
/// <para>
/// An address is reused, so it says nothing by itself. But what a proxy stands for is gone if, and
/// only if, its address was taken out after the proxy was last known to be right. So each proxy
/// keeps the version at which it was, and looks here only if there is a later one.
/// </para>
/// </content>
internal sealed partial class NativeOwner
{
    /// <summary>The version of an object that is no more; no proxy has it.</summary>
    private const int Ended = -1;

    private Dictionary<Place, int>? goneSince;

    /// <summary>Counts how often something was taken out.</summary>
    internal int Version { get; private set; }

    partial void Ending() => Version = Ended;

    /// <summary>Notes that an object, or what was in a row of it, is no more.</summary>
    internal void TakeOut(IntPtr address, uint row)
    {
        goneSince ??= [];
        goneSince[new Place(address, row)] = ++Version;
    }

    /// <summary>Whether that was taken out after the version.</summary>
    internal bool IsGone(IntPtr address, uint row, int since) =>
        goneSince != null && goneSince.TryGetValue(new Place(address, row), out int version) &&
        version > since;
}

/// <summary>A row of a native object; or the object itself, or all of its rows.</summary>
internal readonly struct Place(IntPtr address, uint row) : IEquatable<Place>
{
    internal const uint Itself = uint.MaxValue;
    internal const uint AllRows = uint.MaxValue - 1;

    private readonly IntPtr address = address;
    private readonly uint row = row;

    public bool Equals(Place other) => address == other.address && row == other.row;
    public override bool Equals(object? obj) => obj is Place other && Equals(other);
    public override int GetHashCode() => (address.GetHashCode() * 31) + (int)row;
}
