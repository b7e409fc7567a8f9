// Generated from model/schema/tiny.rows by gen/emit_dotnet.py: edit those, not this.
#nullable enable
using System;

namespace Zol;

/// <summary>How good it is.</summary>
public enum Grade
{
    /// <summary>Not set, or a text that the format does not list.</summary>
    None = 0,
    /// <summary>The best. Grade_A in documents.</summary>
    A = 1,
    /// <summary>Nearly "as good", a | b &amp; &lt;c>. Grade_B-plus in documents.</summary>
    BPlus = 2,
}

/// <summary>The root.</summary>
public sealed partial class ZolDocument : ZolObject
{
    /// <summary>An object of its own, with nothing in it.</summary>
    public ZolDocument() : base(0) { }

    internal ZolDocument(in Link link) : base(link) { }

    /// <summary>What "the\rest" means, a | b &amp; c*.</summary>
    /// <exception cref="ZolException">The value cannot stand there.</exception>
    public string Note { get => GetText(0); set => SetText(0, value); }

    /// <summary>When it was stamped.</summary>
    /// <value>At least one in a document that can be saved.</value>
    public ZolValueList<ZolDateTime> Stamps => new MomentList(this, 1);

    /// <summary>Another name.</summary>
    /// <value>White space is collapsed.</value>
    public ZolValueList<string> Alias => new TextList(this, 2);

    /// <summary>How big it is.</summary>
    /// <value>More than 0 and at most 9; null if there is none.</value>
    /// <exception cref="ZolException">The value cannot stand there.</exception>
    public int? Size { get => GetOptionalInteger(3); set => SetInteger(3, value); }

    /// <summary>A box.</summary>
    /// <value>Null if it is marked as nil, which setting null does.</value>
    public Box? Box { get => GetNillable<Box>(4); set => SetNillable(4, value, 1); }

    /// <summary>What shuts the box.</summary>
    /// <value>Null if there is none.</value>
    public Box? Lid { get => GetChild<Box>(5); set => SetChild(5, value); }

    /// <summary>A value with an attribute.</summary>
    public ZolList<Part> Parts => new(this, 6);

    /// <summary>One of the family.</summary>
    public ZolList<Shape> Shapes => new(this, 7);

    /// <summary>One of the family.</summary>
    public Shape? Outline { get => GetChild<Shape>(8); set => SetChild(8, value); }

    /// <summary>What it is tagged with.</summary>
    public AnonTag AnonTag
    {
        get => GetRequired<AnonTag>(9, 5);
        set => SetChild(9, value ?? throw new ArgumentNullException(nameof(value)));
    }

    /// <summary>Whatever else there is.</summary>
    public ZolValueList<ForeignElement> Elements => new ForeignList(this, 10);
}

/// <summary>A box. It may be empty.</summary>
public sealed partial class Box : ZolObject
{
    /// <summary>An object of its own, with nothing in it.</summary>
    public Box() : base(1) { }

    internal Box(in Link link) : base(link) { }

    /// <summary>How it is graded.</summary>
    /// <exception cref="ZolException">The value cannot stand there.</exception>
    public Grade Grade { get => (Grade)GetInteger(256); set => SetInteger(256, (int)value); }

    /// <summary>How a spare one is graded.</summary>
    /// <value>Grade_A is meant where there is none; null if there is none.</value>
    /// <exception cref="ZolException">The value cannot stand there.</exception>
    public Grade? Spare { get => (Grade?)GetOptionalInteger(257); set => SetInteger(257, (int?)value); }

    /// <summary>How many there are, the spare ones included.</summary>
    /// <value>At least 2 and at most 99.</value>
    /// <exception cref="ZolException">The value cannot stand there.</exception>
    public int Count { get => GetInteger(258); set => SetInteger(258, value); }

    /// <summary>A letter.</summary>
    /// <value>Exactly 1 character.</value>
    /// <exception cref="ZolException">The value cannot stand there.</exception>
    public string Code { get => GetText(259); set => SetText(259, value); }

    /// <summary>How heavy it is.</summary>
    /// <value>In kg; more than 0 and at most 2.5; 1.5 unless it is set.</value>
    /// <exception cref="ZolException">The value cannot stand there.</exception>
    public double Weight { get => GetNumber(260); set => SetNumber(260, value); }

    /// <inheritdoc/>
    public override string ToString() => IsRemoved
        ? Removed("Box") : Describe("Box", ("Weight", Weight));
}

/// <summary>A value with an attribute.</summary>
public sealed partial class Part : ZolObject
{
    /// <summary>An object of its own, with nothing in it.</summary>
    public Part() : base(3) { }

    internal Part(in Link link) : base(link) { }

    /// <summary>What it is counted in.</summary>
    /// <value>Null if there is none.</value>
    /// <exception cref="ZolException">The value cannot stand there.</exception>
    public string? Unit { get => GetOptionalText(768); set => SetText(768, value); }

    /// <summary>What it is made of.</summary>
    public ReadOnlyMemory<byte> Value { get => GetBytes(769); set => SetBytes(769, value); }
}

/// <summary>One of several.</summary>
public sealed partial class PartChoice : ZolObject
{
    /// <summary>An object of its own, with nothing in it.</summary>
    public PartChoice() : base(4) { }

    internal PartChoice(in Link link) : base(link) { }

    /// <summary>What it holds.</summary>
    public PartChoiceKind Kind => (PartChoiceKind)GetChosen(1024);

    private protected override bool IsChoice => true;

    /// <summary>How it is graded.</summary>
    /// <value>Null if it is not what is held.</value>
    /// <exception cref="ZolException">The value cannot stand there.</exception>
    public Grade? Grade { get => (Grade?)GetOptionalInteger(1024); set => SetInteger(1024, (int?)value); }

    /// <summary>What it says.</summary>
    /// <value>White space is collapsed; null if it is not what is held.</value>
    /// <exception cref="ZolException">The value cannot stand there.</exception>
    public string? Text { get => GetOptionalText(1025); set => SetText(1025, value); }

    /// <summary>A share.</summary>
    /// <value>In percent; at least 0; null if it is not what is held.</value>
    /// <exception cref="ZolException">The value cannot stand there.</exception>
    public double? Amount { get => GetOptionalNumber(1026); set => SetNumber(1026, value); }

    /// <summary>A number.</summary>
    /// <value>At least -2147483648 and at most 2147483647; null if it is not what is held.</value>
    /// <exception cref="ZolException">The value cannot stand there.</exception>
    public int? Number { get => GetOptionalInteger(1027); set => SetInteger(1027, value); }

    /// <summary>A box.</summary>
    /// <value>Null if it is not what is held.</value>
    public Box? Box { get => GetNillable<Box>(1028); set => SetNillable(1028, value, 1); }

    /// <inheritdoc/>
    public override string ToString() => IsRemoved
        ? Removed("PartChoice") : Describe("PartChoice", ("Kind", Kind));
}

/// <summary>What a <see cref="PartChoice"/> can hold.</summary>
public enum PartChoiceKind
{
    /// <summary>Nothing.</summary>
    None = 0,
    /// <summary><see cref="PartChoice.Grade"/>: How it is graded.</summary>
    Grade = 1,
    /// <summary><see cref="PartChoice.Text"/>: What it says.</summary>
    Text = 2,
    /// <summary><see cref="PartChoice.Amount"/>: A share.</summary>
    Amount = 3,
    /// <summary><see cref="PartChoice.Number"/>: A number.</summary>
    Number = 4,
    /// <summary><see cref="PartChoice.Box"/>: A box.</summary>
    Box = 5,
}

/// <summary>What it is tagged with.</summary>
public sealed partial class AnonTag : ZolObject
{
    /// <summary>An object of its own, with nothing in it.</summary>
    public AnonTag() : base(5) { }

    internal AnonTag(in Link link) : base(link) { }

    /// <summary>What it holds.</summary>
    public AnonTagKind Kind => (AnonTagKind)GetChosen(1280);

    private protected override bool IsChoice => true;

    /// <summary>What it says.</summary>
    /// <value>Null if it is not what is held.</value>
    /// <exception cref="ZolException">The value cannot stand there.</exception>
    public string? TagText { get => GetOptionalText(1280); set => SetText(1280, value); }

    /// <summary>A number.</summary>
    /// <value>Null if it is not what is held.</value>
    public double? TagNumber { get => GetOptionalNumber(1281); set => SetNumber(1281, value); }

    /// <inheritdoc/>
    public override string ToString() => IsRemoved
        ? Removed("AnonTag") : Describe("AnonTag", ("Kind", Kind));
}

/// <summary>What a <see cref="AnonTag"/> can hold.</summary>
public enum AnonTagKind
{
    /// <summary>Nothing.</summary>
    None = 0,
    /// <summary><see cref="AnonTag.TagText"/>: What it says.</summary>
    TagText = 1,
    /// <summary><see cref="AnonTag.TagNumber"/>: A number.</summary>
    TagNumber = 2,
}

/// <summary>A family.</summary>
public abstract partial class Shape : ZolObject
{
    private protected Shape(in Link link) : base(link) { }

    private protected Shape(uint type) : base(type) { }

    /// <summary>What it is called.</summary>
    /// <value>Null if there is none.</value>
    /// <exception cref="ZolException">The value cannot stand there.</exception>
    public string? Name { get => GetOptionalText(1536); set => SetText(1536, value); }

    /// <summary>One of several.</summary>
    /// <value>Null if there is none.</value>
    public PartChoice? Choice { get => GetChild<PartChoice>(1537); set => SetChild(1537, value); }

    /// <inheritdoc/>
    public override string ToString() => IsRemoved
        ? Removed("Shape") : Describe("Shape", ("Name", Name));
}

/// <summary>Something round.</summary>
public partial class Round : Shape
{
    /// <summary>An object of its own, with nothing in it.</summary>
    public Round() : base(7) { }

    internal Round(in Link link) : base(link) { }

    private protected Round(uint type) : base(type) { }

    /// <summary>From its middle to its edge.</summary>
    /// <value>At least 0.</value>
    /// <exception cref="ZolException">The value cannot stand there.</exception>
    public double Radius { get => GetNumber(1792); set => SetNumber(1792, value); }

    /// <inheritdoc/>
    public override string ToString() => IsRemoved
        ? Removed("Round") : Describe("Round", ("Name", Name), ("Radius", Radius));
}

/// <summary>Something round with a hole.</summary>
public sealed partial class Ring : Round
{
    /// <summary>An object of its own, with nothing in it.</summary>
    public Ring() : base(8) { }

    internal Ring(in Link link) : base(link) { }

    /// <summary>From its middle to the hole.</summary>
    public double Inner { get => GetNumber(2048); set => SetNumber(2048, value); }

    /// <inheritdoc/>
    public override string ToString() => IsRemoved
        ? Removed("Ring") : Describe("Ring", ("Name", Name), ("Radius", Radius), ("Inner", Inner));
}
