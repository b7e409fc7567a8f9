// Generated from model/schema by gen/emit_managed.py: edit those, not this.
using System;

namespace Zol.Interop
{
  internal static partial class Native
  {
    internal const uint Model = 0xd5d88ea3;
  }

  internal static class DynamicTypes
  {
    internal static Proxy Wrap(IntPtr handle, bool owned, Proxy parent)
    {
      switch (Native.zol_type_of(new System.Runtime.InteropServices.HandleRef(parent, handle)))
      {
        case 6: return new ShapeType(handle, owned, parent);
        case 7: return new RoundType(handle, owned, parent);
        case 8: return new RingType(handle, owned, parent);
        case 10: return new AnyShape(handle, owned, parent);
        case 11: return new Round(handle, owned, parent);
        case 12: return new Ring(handle, owned, parent);
        default: throw new InvalidOperationException("An object of no type.");
      }
    }
  }
}
