// Generated from model/schema by gen/emit_dotnet.py: edit those, not this.
#nullable enable
using System;

namespace Zol;

internal static class Classes
{
    internal static ZolObject Wrap(uint type, in Link link) => type switch
    {
        0 => new ZolDocument(link),
        1 => new Box(link),
        3 => new Part(link),
        4 => new PartChoice(link),
        5 => new AnonTag(link),
        7 => new Round(link),
        8 => new Ring(link),
        11 => new Round(link),
        12 => new Ring(link),
        _ => throw new InvalidOperationException("An object of no class."),
    };
}
