using System;
using System.Globalization;
using System.Runtime.InteropServices;
using Zol.Interop;

namespace Zol
{
  /// <summary>
  /// A date and time with its zone, exactly as a document writes it: numbers that no calendar was
  /// asked about, so that 2001-02-31 stands as it is. <see cref="TryGetDateTimeOffset"/> gives the
  /// point in time.
  /// </summary>
  [StructLayout(LayoutKind.Auto)]
  public struct ZolDateTime : IEquatable<ZolDateTime>
  {
    private readonly Moment moment;

    internal ZolDateTime(Moment moment) { this.moment = moment; }

    /// <summary>The numbers as they are to be written.</summary>
    /// <param name="year">Of any number of digits.</param>
    /// <param name="month">From 1.</param>
    /// <param name="day">From 1.</param>
    /// <param name="hour">From 0.</param>
    /// <param name="minute">From 0.</param>
    /// <param name="second">From 0, with a fraction of a few digits.</param>
    /// <param name="offsetMinutes">The zone, in minutes east of UTC; 0 is written as Z.</param>
    public ZolDateTime(int year, int month, int day, int hour, int minute, float second,
                       int offsetMinutes)
    {
      if (month < 0) throw new ArgumentOutOfRangeException(nameof(month));
      if (day < 0) throw new ArgumentOutOfRangeException(nameof(day));
      if (hour < 0) throw new ArgumentOutOfRangeException(nameof(hour));
      if (minute < 0) throw new ArgumentOutOfRangeException(nameof(minute));
      if (!(second >= 0)) throw new ArgumentOutOfRangeException(nameof(second));
      moment = new Moment {
        Year = year, Month = (uint)month, Day = (uint)day, Hours = (uint)hour,
        Minutes = (uint)minute, Seconds = second, OffsetMinutes = offsetMinutes,
        IsUtc = offsetMinutes == 0 ? 1u : 0u };
    }

    /// <summary>A point in time, to the hundredth of a millisecond or so.</summary>
    public ZolDateTime(DateTimeOffset value)
      : this(value.Year, value.Month, value.Day, value.Hour, value.Minute,
             (float)(value.Ticks % TimeSpan.TicksPerMinute / (decimal)TimeSpan.TicksPerSecond),
             (int)value.Offset.TotalMinutes)
    {
    }

    /// <summary>The year.</summary>
    public int Year { get { return moment.Year; } }
    /// <summary>The month, from 1.</summary>
    public int Month { get { return (int)moment.Month; } }
    /// <summary>The day of the month, from 1.</summary>
    public int Day { get { return (int)moment.Day; } }
    /// <summary>The hour.</summary>
    public int Hour { get { return (int)moment.Hours; } }
    /// <summary>The minute.</summary>
    public int Minute { get { return (int)moment.Minutes; } }
    /// <summary>The second, with its fraction.</summary>
    public float Second { get { return moment.Seconds; } }
    /// <summary>The zone, in minutes east of UTC.</summary>
    public int OffsetMinutes { get { return moment.OffsetMinutes; } }
    /// <summary>Whether the zone is UTC.</summary>
    public bool IsUtc { get { return moment.IsUtc != 0 || moment.OffsetMinutes == 0; } }

    /// <summary>The point in time; false for one that the calendar does not have.</summary>
    public bool TryGetDateTimeOffset(out DateTimeOffset value)
    {
      value = default(DateTimeOffset);
      bool isInCalendar = Year >= 1 && Year <= 9999 && Month >= 1 && Month <= 12 && Day >= 1 &&
        Day <= DateTime.DaysInMonth(Year, Month) && Hour >= 0 && Hour < 24 && Minute >= 0 &&
        Minute < 60 && Second >= 0 && Second < 60 && Math.Abs(OffsetMinutes) <= 14 * 60;
      if (!isInCalendar) return false;
      // A float says no more than seven digits; a decimal keeps to them.
      long ticks = (long)((decimal)Second * TimeSpan.TicksPerSecond);
      long clock = new DateTime(Year, Month, Day, Hour, Minute, 0).Ticks + ticks;
      long utc = clock - OffsetMinutes * TimeSpan.TicksPerMinute;
      if (utc < DateTime.MinValue.Ticks || utc > DateTime.MaxValue.Ticks) return false;
      value = new DateTimeOffset(clock, TimeSpan.FromMinutes(OffsetMinutes));
      return true;
    }

    /// <summary>The point in time.</summary>
    /// <exception cref="OverflowException">The calendar has no such point.</exception>
    public DateTimeOffset ToDateTimeOffset()
    {
      DateTimeOffset value;
      if (TryGetDateTimeOffset(out value)) return value;
      throw new OverflowException("No calendar has " + this + ".");
    }

    /// <summary>A point in time as a document writes it.</summary>
    public static implicit operator ZolDateTime(DateTimeOffset value)
    {
      return new ZolDateTime(value);
    }

    /// <summary>A point in time as a document writes it.</summary>
    public static ZolDateTime FromDateTimeOffset(DateTimeOffset value)
    {
      return new ZolDateTime(value);
    }

    internal Moment ToMoment() { return moment; }

    /// <summary>As a document has it, to the digits that a second can have.</summary>
    public override string ToString()
    {
      string zone = IsUtc ? "Z" : string.Format(
        CultureInfo.InvariantCulture, "{0}{1:00}:{2:00}", OffsetMinutes < 0 ? "-" : "+",
        Math.Abs(OffsetMinutes) / 60, Math.Abs(OffsetMinutes) % 60);
      return string.Format(
        CultureInfo.InvariantCulture, "{0:0000}-{1:00}-{2:00}T{3:00}:{4:00}:{5:00.######}{6}",
        Year, Month, Day, Hour, Minute, (decimal)Second, zone);
    }

    /// <summary>Whether the same numbers are written.</summary>
    public bool Equals(ZolDateTime other)
    {
      return Year == other.Year && Month == other.Month && Day == other.Day &&
        Hour == other.Hour && Minute == other.Minute && Second.Equals(other.Second) &&
        OffsetMinutes == other.OffsetMinutes;
    }
    /// <summary>Whether the same numbers are written.</summary>
    public override bool Equals(object obj)
    {
      return obj is ZolDateTime && Equals((ZolDateTime)obj);
    }
    /// <summary>A hash of the numbers.</summary>
    public override int GetHashCode()
    {
      int date = (Year * 13 + Month) * 32 + Day;
      return ((date * 24 + Hour) * 60 + Minute) * 61 + Second.GetHashCode() + OffsetMinutes;
    }
    /// <summary>Whether the same numbers are written.</summary>
    public static bool operator ==(ZolDateTime left, ZolDateTime right)
    {
      return left.Equals(right);
    }
    /// <summary>Whether other numbers are written.</summary>
    public static bool operator !=(ZolDateTime left, ZolDateTime right)
    {
      return !left.Equals(right);
    }
  }
}
