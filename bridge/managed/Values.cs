using System;
using System.Runtime.InteropServices;

namespace Zol.Interop
{
  /// <summary>The numbers of a date and time as native code has them.</summary>
  [StructLayout(LayoutKind.Sequential)]
  internal struct Moment
  {
    internal int Year;
    internal uint Month, Day, Hours, Minutes;
    internal float Seconds;
    internal int OffsetMinutes;
    internal uint IsUtc;
  }

  public partial class c_binary
  {
    /// <summary>A copy of the bytes.</summary>
    public byte[] get_bytes()
    {
      byte[] bytes = new byte[size()];
      Native.zol_binary_bytes(Self, bytes, (uint)bytes.Length);
      return bytes;
    }
  }

  public partial class c_datetime
  {
    /// <summary>A date and time of these numbers, without a text in between.</summary>
    /// <exception cref="ArgumentException">No document can hold it.</exception>
    public c_datetime(ZolDateTime value) : this() { set_value(value); }

    /// <summary>All numbers at once.</summary>
    public ZolDateTime get_value()
    {
      Moment moment;
      Native.zol_datetime_get(Self, out moment);
      return new ZolDateTime(moment);
    }

    /// <summary>All numbers at once.</summary>
    /// <exception cref="ArgumentException">No document can hold them.</exception>
    public void set_value(ZolDateTime value)
    {
      Moment moment = value.ToMoment();
      if (Native.zol_datetime_set(Self, ref moment) != 0)
      {
        throw new ArgumentException("No document can hold " + value + ".", nameof(value));
      }
    }
  }

  /// <summary>The points of both spectral spaces at once.</summary>
  internal static class SpectrumPoints
  {
    internal static void Get(HandleRef spectrum, uint count, out double[] wavelengths,
                             out double[] values)
    {
      wavelengths = new double[count];
      values = new double[count];
      Native.zol_spectrum_points(spectrum, wavelengths, values, count);
    }

    internal static elmx_error Set(HandleRef spectrum, double[] wavelengths, double[] values)
    {
      if (wavelengths == null) throw new ArgumentNullException(nameof(wavelengths));
      if (values == null) throw new ArgumentNullException(nameof(values));
      if (values.Length != wavelengths.Length)
      {
        throw new ArgumentException("There are " + wavelengths.Length + " wavelengths.", nameof(values));
      }
      uint wrong;
      return (elmx_error)Native.zol_set_spectrum(spectrum, wavelengths, values,
                                                 (uint)values.Length, out wrong);
    }
  }

  public partial class ColorSpaceSpectralType
  {
    /// <summary>All points, in nm and as factors.</summary>
    public void get_points(out double[] wavelengths, out double[] values)
    {
      SpectrumPoints.Get(Self, size_ReflectancePoint(), out wavelengths, out values);
    }

    /// <summary>Puts these points in the place of all others, or changes nothing.</summary>
    public elmx_error set_points(double[] wavelengths, double[] values)
    {
      return Grown(SpectrumPoints.Set(Self, wavelengths, values));
    }
  }

  public partial class ColorSpaceEmissiveSpectralType
  {
    /// <summary>All points, in nm and W/(sr.m2.nm).</summary>
    public void get_points(out double[] wavelengths, out double[] values)
    {
      SpectrumPoints.Get(Self, size_EmissiveSpectralPoint(), out wavelengths, out values);
    }

    /// <summary>Puts these points in the place of all others, or changes nothing.</summary>
    public elmx_error set_points(double[] wavelengths, double[] values)
    {
      return Grown(SpectrumPoints.Set(Self, wavelengths, values));
    }
  }
}
