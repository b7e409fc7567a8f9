#nullable enable
using System;
using System.Collections;
using System.Collections.Generic;
using System.Globalization;
using Zol.Interop;

namespace Zol;

/// <summary>A point of a spectrum.</summary>
/// <param name="wavelength">In nm.</param>
/// <param name="value">A factor or a radiance, as the space says.</param>
public readonly struct SpectrumPoint(double wavelength, double value) : IEquatable<SpectrumPoint>
{
    /// <summary>The wavelength in nm.</summary>
    public double Wavelength { get; } = wavelength;

    /// <summary>A factor or a radiance, as the space says.</summary>
    public double Value { get; } = value;

    /// <summary>Takes the point apart.</summary>
    /// <param name="wavelength">In nm.</param>
    /// <param name="value">A factor or a radiance.</param>
    public void Deconstruct(out double wavelength, out double value)
    {
        wavelength = Wavelength;
        value = Value;
    }

    /// <summary>Whether the numbers are the same.</summary>
    /// <param name="other">Another point.</param>
    /// <returns>Whether they are.</returns>
    public bool Equals(SpectrumPoint other) =>
        Wavelength.Equals(other.Wavelength) && Value.Equals(other.Value);

    /// <inheritdoc/>
    public override bool Equals(object? obj) => obj is SpectrumPoint other && Equals(other);

    /// <inheritdoc/>
    public override int GetHashCode() => (Wavelength.GetHashCode() * 31) + Value.GetHashCode();

    /// <summary>Whether the numbers are the same.</summary>
    /// <param name="left">A point.</param>
    /// <param name="right">Another one.</param>
    /// <returns>Whether they are.</returns>
    public static bool operator ==(SpectrumPoint left, SpectrumPoint right) => left.Equals(right);

    /// <summary>Whether the numbers differ.</summary>
    /// <param name="left">A point.</param>
    /// <param name="right">Another one.</param>
    /// <returns>Whether they do.</returns>
    public static bool operator !=(SpectrumPoint left, SpectrumPoint right) => !left.Equals(right);

    /// <inheritdoc/>
    public override string ToString() =>
        string.Format(CultureInfo.InvariantCulture, "{0} nm: {1}", Wavelength, Value);
}

/// <summary>The numbers of a spectrum, apart from any document.</summary>
public sealed class Spectrum : IReadOnlyList<SpectrumPoint>
{
    private readonly double[] wavelengths, values;

    /// <summary>A spectrum of points in the order of a document.</summary>
    /// <param name="wavelengths">In nm.</param>
    /// <param name="values">As many.</param>
    public Spectrum(ReadOnlySpan<double> wavelengths, ReadOnlySpan<double> values)
        : this(wavelengths.ToArray(), values.ToArray())
    {
        if (values.Length != wavelengths.Length)
        {
            throw new ArgumentException($"There are {wavelengths.Length} wavelengths.", nameof(values));
        }
    }

    private Spectrum(double[] wavelengths, double[] values)
    {
        this.wavelengths = wavelengths;
        this.values = values;
    }

    /// <summary>A spectrum whose wavelengths lie at equal distances.</summary>
    /// <param name="first">The first wavelength in nm.</param>
    /// <param name="step">From each to the next, in nm.</param>
    /// <param name="values">The values.</param>
    /// <returns>The spectrum.</returns>
    public static Spectrum FromRange(double first, double step, ReadOnlySpan<double> values)
    {
        var wavelengths = new double[values.Length];
        for (int i = 0; i < wavelengths.Length; ++i) wavelengths[i] = first + (i * step);
        return new Spectrum(wavelengths, values.ToArray());
    }

    /// <summary>The number of points.</summary>
    public int Count => values.Length;

    /// <summary>The wavelengths in nm.</summary>
    public ReadOnlySpan<double> Wavelengths => wavelengths;

    /// <summary>The values: factors or radiances, as the space says.</summary>
    public ReadOnlySpan<double> Values => values;

    /// <summary>A point.</summary>
    /// <param name="index">From 0.</param>
    public SpectrumPoint this[int index] => new(wavelengths[index], values[index]);

    /// <summary>Walks the points.</summary>
    /// <returns>An enumerator that stands before the first one.</returns>
    public IEnumerator<SpectrumPoint> GetEnumerator()
    {
        for (int i = 0; i < Count; ++i) yield return this[i];
    }

    IEnumerator IEnumerable.GetEnumerator() => GetEnumerator();

    /// <inheritdoc/>
    public override string ToString() => Count == 0 ? "no points" : string.Format(
        CultureInfo.InvariantCulture, "{0} points from {1} to {2} nm", Count, wavelengths[0],
        wavelengths[Count - 1]);

    // As many as instruments measure; more take a second call.
    private const int Usual = 128;

    internal static unsafe Spectrum Read(ZolObject space)
    {
        double* buffer = stackalloc double[2 * Usual];
        IntPtr self = space.Live();
        uint count = Rows.zol_spectrum_points(self, buffer, buffer + Usual, Usual);
        var wavelengths = new double[count];
        var values = new double[count];
        if (count <= Usual)
        {
            new ReadOnlySpan<double>(buffer, (int)count).CopyTo(wavelengths);
            new ReadOnlySpan<double>(buffer + Usual, (int)count).CopyTo(values);
        }
        else
        {
            fixed (double* left = wavelengths, right = values)
            {
                _ = Rows.zol_spectrum_points(self, left, right, count);
            }
        }
        GC.KeepAlive(space);
        return new Spectrum(wavelengths, values);
    }

    internal static unsafe void Write(ZolObject space, uint row, Spectrum spectrum)
    {
        if (spectrum is null) throw new ArgumentNullException(nameof(spectrum));
        fixed (double* left = spectrum.wavelengths, right = spectrum.values)
        {
            uint wrong;
            IntPtr self = space.Live();
            int code = Rows.zol_set_spectrum(self, left, right, (uint)spectrum.Count, &wrong);
            if (code != 0) throw space.Refused(code, row, spectrum[(int)wrong].ToString(), wrong);
            // Points that were left over are gone, and one cannot be told from another.
            space.Lifetime.TakeOut(self, row);
            space.Lifetime.Grow(64L * spectrum.Count);
        }
        GC.KeepAlive(space);
    }
}
