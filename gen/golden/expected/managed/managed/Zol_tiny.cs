// Generated from tiny.rows by gen/emit_managed.py: edit those, not this.
using System;
using System.Runtime.InteropServices;

namespace Zol.Interop
{
  /// <summary>The root.</summary>
  public partial class Zol : Proxy
  {
    internal Zol(IntPtr handle, bool owned, Proxy parent)
      : base(handle, owned, parent) { }

    internal static Zol Wrap(IntPtr handle, bool owned, Proxy parent)
    {
      return handle == IntPtr.Zero ? null : new Zol(handle, owned, parent);
    }

    public Zol() : this(Native.new_Zol__SWIG_0(), true, null) { }
    public Zol(Zol other) : this(Pending.Checked(Native.new_Zol__SWIG_1(Of(other))), true, null) { }
    public void swap(Zol other) { Native.Zol_swap(Self, Of(other)); Pending.Check(); }
    public void reset() { Native.Zol_reset(Self); }
    public bool is_occurs_ok() { return Native.Zol_is_occurs_ok(Self); }
    public elmx_error loadString(string text)
    {
      return Measured((elmx_error)Native.Zol_loadString(Self, text));
    }
    public XMLDocumentResult writeString()
    {
      return XMLDocumentResult.Wrap(Native.Zol_writeString(Self), true, null);
    }
    public string get_Note() { return Text.Take(Native.Zol_get_Note(Self)); }
    public elmx_error set_Note(string value)
    {
      return (elmx_error)Native.Zol_set_Note(Self, Grown(value));
    }
    public c_datetime get_Stamp(uint index)
    {
      return c_datetime.Wrap(Native.Zol_get_Stamp(Self, Below(index, size_Stamp())), false, this);
    }
    public elmx_error set_Stamp(uint index, c_datetime value)
    {
      return (elmx_error)Pending.Checked(Native.Zol_set_Stamp(Self, Below(index, size_Stamp()), Of(value)));
    }
    public elmx_error append_Stamp(c_datetime value)
    {
      return Grown((elmx_error)Pending.Checked(Native.Zol_append_Stamp(Self, Of(value))));
    }
    public elmx_error insert_Stamp(uint index, c_datetime value)
    {
      return Grown((elmx_error)Pending.Checked(Native.Zol_insert_Stamp(Self, UpTo(index, size_Stamp()), Of(value))));
    }
    public void delete_Stamp(uint index)
    {
      Native.Zol_delete_Stamp(Self, Below(index, size_Stamp()));
    }
    public void clear_Stamp() { Native.Zol_clear_Stamp(Self); }
    public uint size_Stamp() { return Native.Zol_size_Stamp(Self); }
    /// <summary>All at once.</summary>
    public ZolDateTime[] all_Stamp()
    {
      var moments = new Moment[size_Stamp()];
      Native.zol_moments(Self, 1, moments, (uint)moments.Length);
      return Array.ConvertAll(moments, moment => new ZolDateTime(moment));
    }
    public string get_Alias(uint index)
    {
      return Text.Take(Native.Zol_get_Alias(Self, Below(index, size_Alias())));
    }
    public elmx_error set_Alias(uint index, string value)
    {
      return (elmx_error)Native.Zol_set_Alias(Self, Below(index, size_Alias()), Grown(value));
    }
    public elmx_error append_Alias(string value)
    {
      return Grown((elmx_error)Native.Zol_append_Alias(Self, Grown(value)));
    }
    public elmx_error insert_Alias(uint index, string value)
    {
      return Grown((elmx_error)Native.Zol_insert_Alias(Self, UpTo(index, size_Alias()), Grown(value)));
    }
    public void delete_Alias(uint index)
    {
      Native.Zol_delete_Alias(Self, Below(index, size_Alias()));
    }
    public void clear_Alias() { Native.Zol_clear_Alias(Self); }
    public uint size_Alias() { return Native.Zol_size_Alias(Self); }
    /// <summary>All at once.</summary>
    public string[] all_Alias() { return Text.TakeAll(Native.zol_texts(Self, 2)); }
    public uint get_Size() { return Native.Zol_get_Size(Self); }
    public elmx_error set_Size(uint value) { return (elmx_error)Native.Zol_set_Size(Self, value); }
    public bool isset_Size() { return Native.Zol_isset_Size(Self); }
    public void unset_Size() { Native.Zol_unset_Size(Self); }
    public Box get_Box() { return Box.Wrap(Native.Zol_get_Box__SWIG_0(Self), false, this); }
    public elmx_error assign_Box(Box value)
    {
      return (elmx_error)Pending.Checked(Native.Zol_assign_Box(Self, Of(value)));
    }
    /// <summary>Null if there is none.</summary>
    public Box get_Lid()
    {
      return isset_Lid() ? make_Lid() : null;
    }
    /// <summary>Makes it if there is none.</summary>
    public Box make_Lid() { return Box.Wrap(Native.Zol_get_Lid__SWIG_0(Self), false, this); }
    public elmx_error assign_Lid(Box value)
    {
      return (elmx_error)Pending.Checked(Native.Zol_assign_Lid(Self, Of(value)));
    }
    public bool isset_Lid() { return Native.Zol_isset_Lid(Self); }
    public void unset_Lid() { Native.Zol_unset_Lid(Self); }
    public Part get_Part(uint index)
    {
      return Part.Wrap(Native.Zol_get_Part__SWIG_0(Self, Below(index, size_Part())), false, this);
    }
    public elmx_error assign_Part(uint index, Part value)
    {
      return (elmx_error)Pending.Checked(Native.Zol_assign_Part(Self, Below(index, size_Part()), Of(value)));
    }
    public Part append_Part()
    {
      return Grown(Part.Wrap(Native.Zol_append_Part(Self), false, this));
    }
    public Part insert_Part(uint index)
    {
      return Grown(Part.Wrap(Native.Zol_insert_Part(Self, UpTo(index, size_Part())), false, this));
    }
    public Part back_Part()
    {
      Below(0, size_Part());
      return Part.Wrap(Native.Zol_back_Part(Self), false, this);
    }
    public void delete_Part(uint index) { Native.Zol_delete_Part(Self, Below(index, size_Part())); }
    public void clear_Part() { Native.Zol_clear_Part(Self); }
    public uint size_Part() { return Native.Zol_size_Part(Self); }
    public sg_Shape get_Shape(uint index)
    {
      return sg_Shape.Wrap(Native.Zol_get_Shape__SWIG_0(Self, Below(index, size_Shape())), false, this);
    }
    public elmx_error assign_Shape(uint index, sg_Shape value)
    {
      return (elmx_error)Pending.Checked(Native.Zol_assign_Shape(Self, Below(index, size_Shape()), Of(value)));
    }
    public sg_Shape append_Shape()
    {
      return Grown(sg_Shape.Wrap(Native.Zol_append_Shape(Self), false, this));
    }
    public sg_Shape insert_Shape(uint index)
    {
      return Grown(sg_Shape.Wrap(Native.Zol_insert_Shape(Self, UpTo(index, size_Shape())), false, this));
    }
    public sg_Shape back_Shape()
    {
      Below(0, size_Shape());
      return sg_Shape.Wrap(Native.Zol_back_Shape(Self), false, this);
    }
    public void delete_Shape(uint index)
    {
      Native.Zol_delete_Shape(Self, Below(index, size_Shape()));
    }
    public void clear_Shape() { Native.Zol_clear_Shape(Self); }
    public uint size_Shape() { return Native.Zol_size_Shape(Self); }
    public sg_Shape get_Outline()
    {
      return sg_Shape.Wrap(Native.Zol_get_Outline__SWIG_0(Self), false, this);
    }
    public elmx_error assign_Outline(sg_Shape value)
    {
      return (elmx_error)Pending.Checked(Native.Zol_assign_Outline(Self, Of(value)));
    }
    public anon_Tag get_anon_Tag()
    {
      return anon_Tag.Wrap(Native.Zol_get_anon_Tag__SWIG_0(Self), false, this);
    }
    public elmx_error assign_anon_Tag(anon_Tag value)
    {
      return (elmx_error)Pending.Checked(Native.Zol_assign_anon_Tag(Self, Of(value)));
    }
    public string get_any(uint index, out string full_name, out string namespace_uri)
    {
      IntPtr name, uri;
      IntPtr text = Native.zol_any_text(Self, Below(index, size_any()), out name, out uri);
      full_name = Text.TakeNarrow(name);
      namespace_uri = Text.TakeNarrow(uri);
      return Text.TakeNarrow(text);
    }
    public elmx_error append_any(string text)
    {
      return Grown((elmx_error)Pending.Checked(Native.Zol_append_any(Self, Text.Narrow(text))));
    }
    public elmx_error insert_any(uint index, string text)
    {
      return Grown((elmx_error)Pending.Checked(Native.Zol_insert_any(Self, UpTo(index, size_any()), Text.Narrow(text))));
    }
    public void delete_any(uint index) { Native.Zol_delete_any(Self, Below(index, size_any())); }
    public void clear_any() { Native.Zol_clear_any(Self); }
    public uint size_any() { return Native.Zol_size_any(Self); }
  }

  /// <summary>A box, which may be empty.</summary>
  public partial class Box : Proxy
  {
    internal Box(IntPtr handle, bool owned, Proxy parent)
      : base(handle, owned, parent) { }

    internal static Box Wrap(IntPtr handle, bool owned, Proxy parent)
    {
      return handle == IntPtr.Zero ? null : new Box(handle, owned, parent);
    }

    public enum Eenum_Grade
    {
      Grade_unknown = 0,
      Grade_A = 1,
      Grade_B_plus = 2,
    }

    public enum Eenum_Spare
    {
      Spare_unknown = 0,
      Spare_Grade_A = 1,
      Spare_Grade_B_plus = 2,
    }

    public Box() : this(Native.new_Box__SWIG_0(), true, null) { }
    public Box(Box other) : this(Pending.Checked(Native.new_Box__SWIG_1(Of(other))), true, null) { }
    public void swap(Box other) { Native.Box_swap(Self, Of(other)); Pending.Check(); }
    public void reset() { Native.Box_reset(Self); }
    public bool is_occurs_ok() { return Native.Box_is_occurs_ok(Self); }
    public void setnil_Box() { Native.Box_setnil_Box(Self); }
    public bool isnil_Box() { return Native.Box_isnil_Box(Self); }
    public string get_Grade() { return Text.Take(Native.Box_get_Grade(Self)); }
    public elmx_error set_Grade(string value)
    {
      return (elmx_error)Native.Box_set_Grade(Self, Grown(value));
    }
    public Eenum_Grade getenum_Grade() { return (Eenum_Grade)Native.Box_getenum_Grade(Self); }
    public bool setenum_Grade(Eenum_Grade value)
    {
      return Native.Box_setenum_Grade(Self, (int)value);
    }
    public string get_Spare() { return Text.Take(Native.Box_get_Spare(Self)); }
    public elmx_error set_Spare(string value)
    {
      return (elmx_error)Native.Box_set_Spare(Self, Grown(value));
    }
    public Eenum_Spare getenum_Spare() { return (Eenum_Spare)Native.Box_getenum_Spare(Self); }
    public bool setenum_Spare(Eenum_Spare value)
    {
      return Native.Box_setenum_Spare(Self, (int)value);
    }
    public bool isset_Spare() { return Native.Box_isset_Spare(Self); }
    public void unset_Spare() { Native.Box_unset_Spare(Self); }
    public byte get_Count() { return (byte)Native.Box_get_Count(Self); }
    public elmx_error set_Count(byte value)
    {
      return (elmx_error)Native.Box_set_Count(Self, value);
    }
    public string get_Code() { return Text.Take(Native.Box_get_Code(Self)); }
    public elmx_error set_Code(string value)
    {
      return (elmx_error)Native.Box_set_Code(Self, Grown(value));
    }
    public double get_Weight() { return Native.Box_get_Weight(Self); }
    public elmx_error set_Weight(double value)
    {
      return (elmx_error)Native.Box_set_Weight(Self, value);
    }
  }

  /// <summary>The class Seal.</summary>
  public partial class Seal : Proxy
  {
    internal Seal(IntPtr handle, bool owned, Proxy parent)
      : base(handle, owned, parent) { }

    internal static Seal Wrap(IntPtr handle, bool owned, Proxy parent)
    {
      return handle == IntPtr.Zero ? null : new Seal(handle, owned, parent);
    }

    public Seal() : this(Native.new_Seal__SWIG_0(), true, null) { }
    public Seal(Seal other)
      : this(Pending.Checked(Native.new_Seal__SWIG_1(Of(other))), true, null) { }
    public void swap(Seal other) { Native.Seal_swap(Self, Of(other)); Pending.Check(); }
    public void reset() { Native.Seal_reset(Self); }
    public bool is_occurs_ok() { return Native.Seal_is_occurs_ok(Self); }
  }

  /// <summary>A value with an attribute.</summary>
  public partial class Part : Proxy
  {
    internal Part(IntPtr handle, bool owned, Proxy parent)
      : base(handle, owned, parent) { }

    internal static Part Wrap(IntPtr handle, bool owned, Proxy parent)
    {
      return handle == IntPtr.Zero ? null : new Part(handle, owned, parent);
    }

    public Part() : this(Native.new_Part__SWIG_0(), true, null) { }
    public Part(Part other)
      : this(Pending.Checked(Native.new_Part__SWIG_1(Of(other))), true, null) { }
    public void swap(Part other) { Native.Part_swap(Self, Of(other)); Pending.Check(); }
    public void reset() { Native.Part_reset(Self); }
    public bool is_occurs_ok() { return Native.Part_is_occurs_ok(Self); }
    public string get_Unit() { return Text.Take(Native.Part_get_Unit(Self)); }
    public elmx_error set_Unit(string value)
    {
      return (elmx_error)Native.Part_set_Unit(Self, Grown(value));
    }
    public bool isset_Unit() { return Native.Part_isset_Unit(Self); }
    public void unset_Unit() { Native.Part_unset_Unit(Self); }
    public c_binary get_Part() { return c_binary.Wrap(Native.Part_get_Part(Self), false, this); }
    public elmx_error set_Part(c_binary value)
    {
      return (elmx_error)Pending.Checked(Native.Part_set_Part(Self, Of(value)));
    }
    public bool isset_Part() { return Native.Part_isset_Part(Self); }
    public void unset_Part() { Native.Part_unset_Part(Self); }
  }

  /// <summary>One of several.</summary>
  public partial class PartChoice : Proxy
  {
    internal PartChoice(IntPtr handle, bool owned, Proxy parent)
      : base(handle, owned, parent) { }

    internal static PartChoice Wrap(IntPtr handle, bool owned, Proxy parent)
    {
      return handle == IntPtr.Zero ? null : new PartChoice(handle, owned, parent);
    }

    public enum Eenum_Grade
    {
      Grade_unknown = 0,
      Grade_A = 1,
      Grade_B_plus = 2,
    }

    public enum elmx_chosen
    {
      chosen_Grade = 0,
      chosen_Text = 1,
      chosen_Amount = 2,
      chosen_Number = 3,
      chosen_Box = 4,
      chosen_none = 5,
    }

    public PartChoice() : this(Native.new_PartChoice__SWIG_0(), true, null) { }
    public PartChoice(PartChoice other)
      : this(Pending.Checked(Native.new_PartChoice__SWIG_1(Of(other))), true, null) { }
    public void swap(PartChoice other) { Native.PartChoice_swap(Self, Of(other)); Pending.Check(); }
    public void reset() { Native.PartChoice_reset(Self); }
    public bool is_occurs_ok() { return Native.PartChoice_is_occurs_ok(Self); }
    public elmx_chosen getchosen() { return (elmx_chosen)Native.PartChoice_getchosen(Self); }
    public string get_Grade() { return Text.Take(Native.PartChoice_get_Grade(Self)); }
    public elmx_error set_Grade(string value)
    {
      return (elmx_error)Native.PartChoice_set_Grade(Self, Grown(value));
    }
    public Eenum_Grade getenum_Grade()
    {
      return (Eenum_Grade)Native.PartChoice_getenum_Grade(Self);
    }
    public bool setenum_Grade(Eenum_Grade value)
    {
      return Native.PartChoice_setenum_Grade(Self, (int)value);
    }
    public string get_Text() { return Text.Take(Native.PartChoice_get_Text(Self)); }
    public elmx_error set_Text(string value)
    {
      return (elmx_error)Native.PartChoice_set_Text(Self, Grown(value));
    }
    public double get_Amount() { return Native.PartChoice_get_Amount(Self); }
    public elmx_error set_Amount(double value)
    {
      return (elmx_error)Native.PartChoice_set_Amount(Self, value);
    }
    public int get_Number() { return Native.PartChoice_get_Number(Self); }
    public elmx_error set_Number(int value)
    {
      return (elmx_error)Native.PartChoice_set_Number(Self, value);
    }
    /// <summary>Null if there is none.</summary>
    public Box get_Box()
    {
      return getchosen() == elmx_chosen.chosen_Box ? make_Box() : null;
    }
    /// <summary>Chooses it if there is none.</summary>
    public Box make_Box() { return Box.Wrap(Native.PartChoice_get_Box__SWIG_0(Self), false, this); }
    public elmx_error assign_Box(Box value)
    {
      return (elmx_error)Pending.Checked(Native.PartChoice_assign_Box(Self, Of(value)));
    }
  }

  /// <summary>The class anon_Tag.</summary>
  public partial class anon_Tag : Proxy
  {
    internal anon_Tag(IntPtr handle, bool owned, Proxy parent)
      : base(handle, owned, parent) { }

    internal static anon_Tag Wrap(IntPtr handle, bool owned, Proxy parent)
    {
      return handle == IntPtr.Zero ? null : new anon_Tag(handle, owned, parent);
    }

    public enum elmx_chosen
    {
      chosen_TagText = 0,
      chosen_TagNumber = 1,
      chosen_none = 2,
    }

    public anon_Tag() : this(Native.new_anon_Tag__SWIG_0(), true, null) { }
    public anon_Tag(anon_Tag other)
      : this(Pending.Checked(Native.new_anon_Tag__SWIG_1(Of(other))), true, null) { }
    public void swap(anon_Tag other) { Native.anon_Tag_swap(Self, Of(other)); Pending.Check(); }
    public void reset() { Native.anon_Tag_reset(Self); }
    public bool is_occurs_ok() { return Native.anon_Tag_is_occurs_ok(Self); }
    public elmx_chosen getchosen() { return (elmx_chosen)Native.anon_Tag_getchosen(Self); }
    public string get_TagText() { return Text.Take(Native.anon_Tag_get_TagText(Self)); }
    public elmx_error set_TagText(string value)
    {
      return (elmx_error)Native.anon_Tag_set_TagText(Self, Grown(value));
    }
    public double get_TagNumber() { return Native.anon_Tag_get_TagNumber(Self); }
    public elmx_error set_TagNumber(double value)
    {
      return (elmx_error)Native.anon_Tag_set_TagNumber(Self, value);
    }
  }

  /// <summary>A family.</summary>
  public partial class ShapeType : Proxy
  {
    internal ShapeType(IntPtr handle, bool owned, Proxy parent)
      : base(handle, owned, parent) { }

    internal static ShapeType Wrap(IntPtr handle, bool owned, Proxy parent)
    {
      return handle == IntPtr.Zero ? null : (ShapeType)DynamicTypes.Wrap(handle, owned, parent);
    }

    public ShapeType() : this(Native.new_ShapeType__SWIG_0(), true, null) { }
    public ShapeType(ShapeType other)
      : this(Pending.Checked(Native.new_ShapeType__SWIG_1(Of(other))), true, null) { }
    public void swap(ShapeType other) { Native.ShapeType_swap(Self, Of(other)); Pending.Check(); }
    public void reset() { Native.ShapeType_reset(Self); }
    public bool is_occurs_ok() { return Native.ShapeType_is_occurs_ok(Self); }
    public ShapeType clone() { return ShapeType.Wrap(Native.ShapeType_clone(Self), true, null); }
    public TypeIdentity getid() { return new TypeIdentity(Native.ShapeType_getid(Self)); }
    public bool has_id(TypeIdentity identity)
    {
      return Native.ShapeType_has_id(Self, identity.Address);
    }
    public static TypeIdentity id_get() { return new TypeIdentity(Native.ShapeType_id_get()); }
    public static void id_set(string identity) { Native.ShapeType_id_set(Text.Narrow(identity)); }
    public static ShapeType factory(int ns_id, string type_name)
    {
      return ShapeType.Wrap(Pending.Checked(Native.ShapeType_factory(ns_id, Text.Narrow(type_name))), true, null);
    }
    public string get_Name() { return Text.Take(Native.ShapeType_get_Name(Self)); }
    public elmx_error set_Name(string value)
    {
      return (elmx_error)Native.ShapeType_set_Name(Self, Grown(value));
    }
    public bool isset_Name() { return Native.ShapeType_isset_Name(Self); }
    public void unset_Name() { Native.ShapeType_unset_Name(Self); }
    /// <summary>Null if there is none.</summary>
    public PartChoice get_Choice()
    {
      return isset_Choice() ? make_Choice() : null;
    }
    /// <summary>Makes it if there is none.</summary>
    public PartChoice make_Choice()
    {
      return PartChoice.Wrap(Native.ShapeType_get_Choice__SWIG_0(Self), false, this);
    }
    public elmx_error assign_Choice(PartChoice value)
    {
      return (elmx_error)Pending.Checked(Native.ShapeType_assign_Choice(Self, Of(value)));
    }
    public bool isset_Choice() { return Native.ShapeType_isset_Choice(Self); }
    public void unset_Choice() { Native.ShapeType_unset_Choice(Self); }
  }

  /// <summary>The class RoundType.</summary>
  public partial class RoundType : ShapeType
  {
    internal RoundType(IntPtr handle, bool owned, Proxy parent)
      : base(handle, owned, parent) { }

    internal static new RoundType Wrap(IntPtr handle, bool owned, Proxy parent)
    {
      return handle == IntPtr.Zero ? null : (RoundType)DynamicTypes.Wrap(handle, owned, parent);
    }

    public RoundType() : this(Native.new_RoundType__SWIG_0(), true, null) { }
    public RoundType(RoundType other)
      : this(Pending.Checked(Native.new_RoundType__SWIG_1(Of(other))), true, null) { }
    public void swap(RoundType other) { Native.RoundType_swap(Self, Of(other)); Pending.Check(); }
    public new void reset() { Native.RoundType_reset(Self); }
    public new bool is_occurs_ok() { return Native.RoundType_is_occurs_ok(Self); }
    public new RoundType clone()
    {
      return RoundType.Wrap(Native.RoundType_clone(Self), true, null);
    }
    public new TypeIdentity getid() { return new TypeIdentity(Native.RoundType_getid(Self)); }
    public new bool has_id(TypeIdentity identity)
    {
      return Native.RoundType_has_id(Self, identity.Address);
    }
    public new static TypeIdentity id_get() { return new TypeIdentity(Native.RoundType_id_get()); }
    public new static void id_set(string identity)
    {
      Native.RoundType_id_set(Text.Narrow(identity));
    }
    public new static RoundType factory(int ns_id, string type_name)
    {
      return RoundType.Wrap(Pending.Checked(Native.RoundType_factory(ns_id, Text.Narrow(type_name))), true, null);
    }
    public double get_Radius() { return Native.RoundType_get_Radius(Self); }
    public elmx_error set_Radius(double value)
    {
      return (elmx_error)Native.RoundType_set_Radius(Self, value);
    }
  }

  /// <summary>The class RingType.</summary>
  public partial class RingType : RoundType
  {
    internal RingType(IntPtr handle, bool owned, Proxy parent)
      : base(handle, owned, parent) { }

    internal static new RingType Wrap(IntPtr handle, bool owned, Proxy parent)
    {
      return handle == IntPtr.Zero ? null : (RingType)DynamicTypes.Wrap(handle, owned, parent);
    }

    public RingType() : this(Native.new_RingType__SWIG_0(), true, null) { }
    public RingType(RingType other)
      : this(Pending.Checked(Native.new_RingType__SWIG_1(Of(other))), true, null) { }
    public void swap(RingType other) { Native.RingType_swap(Self, Of(other)); Pending.Check(); }
    public new void reset() { Native.RingType_reset(Self); }
    public new bool is_occurs_ok() { return Native.RingType_is_occurs_ok(Self); }
    public new RingType clone() { return RingType.Wrap(Native.RingType_clone(Self), true, null); }
    public new TypeIdentity getid() { return new TypeIdentity(Native.RingType_getid(Self)); }
    public new bool has_id(TypeIdentity identity)
    {
      return Native.RingType_has_id(Self, identity.Address);
    }
    public new static TypeIdentity id_get() { return new TypeIdentity(Native.RingType_id_get()); }
    public new static void id_set(string identity)
    {
      Native.RingType_id_set(Text.Narrow(identity));
    }
    public double get_Inner() { return Native.RingType_get_Inner(Self); }
    public elmx_error set_Inner(double value)
    {
      return (elmx_error)Native.RingType_set_Inner(Self, value);
    }
  }

  /// <summary>The class sg_Shape.</summary>
  public partial class sg_Shape : Proxy
  {
    internal sg_Shape(IntPtr handle, bool owned, Proxy parent)
      : base(handle, owned, parent) { }

    internal static sg_Shape Wrap(IntPtr handle, bool owned, Proxy parent)
    {
      return handle == IntPtr.Zero ? null : new sg_Shape(handle, owned, parent);
    }

    public enum elmx_chosen
    {
      chosen_Shape = 0,
      chosen_Round = 1,
      chosen_Ring = 2,
      chosen_none = 3,
    }

    public sg_Shape() : this(Native.new_sg_Shape__SWIG_0(), true, null) { }
    public sg_Shape(sg_Shape other)
      : this(Pending.Checked(Native.new_sg_Shape__SWIG_1(Of(other))), true, null) { }
    public void swap(sg_Shape other) { Native.sg_Shape_swap(Self, Of(other)); Pending.Check(); }
    public void reset() { Native.sg_Shape_reset(Self); }
    public bool is_occurs_ok() { return Native.sg_Shape_is_occurs_ok(Self); }
    public elmx_chosen getchosen() { return (elmx_chosen)Native.sg_Shape_getchosen(Self); }
    /// <summary>Null if there is none.</summary>
    public ShapeType get_Shape()
    {
      return getchosen() == elmx_chosen.chosen_Shape ? make_Shape() : null;
    }
    /// <summary>Chooses it if there is none.</summary>
    public ShapeType make_Shape()
    {
      return ShapeType.Wrap(Native.sg_Shape_get_Shape__SWIG_0(Self), false, this);
    }
    public elmx_error assign_Shape(ShapeType value)
    {
      return (elmx_error)Pending.Checked(Native.sg_Shape_assign_Shape__SWIG_0(Self, Of(Uncut(value, "adopt_Shape keeps them", 6, 10))));
    }
    /// <summary>Holds a copy of the value as the type that it is of. 7 if that cannot be.</summary>
    public elmx_error adopt_Shape(ShapeType value)
    {
      if (value == null) throw new ArgumentNullException("value");
      return (elmx_error)Native.zol_assign_member(Self, 2304, Of(value));
    }
    /// <summary>Null if there is none.</summary>
    public RoundType get_Round()
    {
      return getchosen() == elmx_chosen.chosen_Round ? make_Round() : null;
    }
    /// <summary>Chooses it if there is none.</summary>
    public RoundType make_Round()
    {
      return RoundType.Wrap(Native.sg_Shape_get_Round__SWIG_0(Self), false, this);
    }
    public elmx_error assign_Round(RoundType value)
    {
      return (elmx_error)Pending.Checked(Native.sg_Shape_assign_Round__SWIG_0(Self, Of(Uncut(value, "adopt_Round keeps them", 7, 11))));
    }
    /// <summary>Holds a copy of the value as the type that it is of. 7 if that cannot be.</summary>
    public elmx_error adopt_Round(RoundType value)
    {
      if (value == null) throw new ArgumentNullException("value");
      return (elmx_error)Native.zol_assign_member(Self, 2305, Of(value));
    }
    /// <summary>Null if there is none.</summary>
    public RingType get_Ring()
    {
      return getchosen() == elmx_chosen.chosen_Ring ? make_Ring() : null;
    }
    /// <summary>Chooses it if there is none.</summary>
    public RingType make_Ring()
    {
      return RingType.Wrap(Native.sg_Shape_get_Ring__SWIG_0(Self), false, this);
    }
    public elmx_error assign_Ring(RingType value)
    {
      return (elmx_error)Pending.Checked(Native.sg_Shape_assign_Ring(Self, Of(Uncut(value, "only a RingType can stand here", 8, 12))));
    }
  }

  /// <summary>The element AnyShape, of type ShapeType.</summary>
  public partial class AnyShape : ShapeType
  {
    internal AnyShape(IntPtr handle, bool owned, Proxy parent)
      : base(handle, owned, parent) { }

    internal static new AnyShape Wrap(IntPtr handle, bool owned, Proxy parent)
    {
      return handle == IntPtr.Zero ? null : (AnyShape)DynamicTypes.Wrap(handle, owned, parent);
    }

    public AnyShape() : this(Native.new_AnyShape__SWIG_0(), true, null) { }
    public AnyShape(AnyShape other)
      : this(Pending.Checked(Native.new_AnyShape__SWIG_1(Of(other))), true, null) { }
  }

  /// <summary>The element Round, of type RoundType.</summary>
  public partial class Round : RoundType
  {
    internal Round(IntPtr handle, bool owned, Proxy parent)
      : base(handle, owned, parent) { }

    internal static new Round Wrap(IntPtr handle, bool owned, Proxy parent)
    {
      return handle == IntPtr.Zero ? null : (Round)DynamicTypes.Wrap(handle, owned, parent);
    }

    public Round() : this(Native.new_Round__SWIG_0(), true, null) { }
    public Round(Round other)
      : this(Pending.Checked(Native.new_Round__SWIG_1(Of(other))), true, null) { }
  }

  /// <summary>The element Ring, of type RingType.</summary>
  public partial class Ring : RingType
  {
    internal Ring(IntPtr handle, bool owned, Proxy parent)
      : base(handle, owned, parent) { }

    internal static new Ring Wrap(IntPtr handle, bool owned, Proxy parent)
    {
      return handle == IntPtr.Zero ? null : (Ring)DynamicTypes.Wrap(handle, owned, parent);
    }

    public Ring() : this(Native.new_Ring__SWIG_0(), true, null) { }
    public Ring(Ring other)
      : this(Pending.Checked(Native.new_Ring__SWIG_1(Of(other))), true, null) { }
    public void swap(Ring other) { Native.Ring_swap(Self, Of(other)); Pending.Check(); }
    public new void reset() { Native.Ring_reset(Self); }
    public new bool is_occurs_ok() { return Native.Ring_is_occurs_ok(Self); }
    public void setnil_Ring() { Native.Ring_setnil_Ring(Self); }
    public bool isnil_Ring() { return Native.Ring_isnil_Ring(Self); }
  }
}
