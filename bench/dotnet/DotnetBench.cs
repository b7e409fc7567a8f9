// What a .NET program pays for properties, lists, spectra and documents: by the classes of
// Zol.Interop, which are the functions of the library one by one, and by those of Zol.
//
//     dotnet DotnetBench.dll DOCUMENT
//
// The document has a palette, as examples/documents/named-colours.zol.
//
// The best of five rounds each. Status 1 if a property of Zol costs more than ten nanoseconds above
// one of Zol.Interop.

using System.Diagnostics;
using System.Globalization;
using Zol;
using Raw = Zol.Interop;

internal static class DotnetBench
{
    private const int Rounds = 5;
    private const double Bound = 10;
    private static double sink;
    private static bool isTooSlow;

    private static double Best(int count, Action action)
    {
        // Tiered compilation takes its time.
        for (int i = 0; i < 3; ++i) action();
        Thread.Sleep(100);
        double best = double.MaxValue;
        for (int round = 0; round < Rounds; ++round)
        {
            var watch = Stopwatch.StartNew();
            action();
            best = Math.Min(best, watch.Elapsed.TotalMilliseconds * 1e6 / count);
        }
        return best;
    }

    private static void Compare(string name, int count, Action raw, Action idiomatic, bool isBound)
    {
        double before = Best(count, raw), after = Best(count, idiomatic);
        Console.WriteLine(string.Format(CultureInfo.InvariantCulture,
                                        "{0,-34}{1,12:F1}{2,12:F1}", name, before, after));
        isTooSlow |= isBound && after > before + Bound;
    }

    private static int Main(string[] arguments)
    {
        if (arguments.Length != 1)
        {
            Console.Error.WriteLine("usage: DotnetBench DOCUMENT");
            return 2;
        }
        const int Calls = 1_000_000, Walks = 200, Spectra = 20_000, Documents = 10;
        Console.WriteLine("nanoseconds                        Zol.Interop         Zol");

        using var rawRgb = new Raw.ColorSpaceRGBType();
        var rgb = new Rgb { Red = 0.5 };
        rawRgb.set_Red(0.5);
        Compare("get a double", Calls,
                () => { for (int i = 0; i < Calls; ++i) sink += rawRgb.get_Red(); },
                () => { for (int i = 0; i < Calls; ++i) sink += rgb.Red; }, true);
        Compare("get an optional double", Calls,
                () =>
                {
                    for (int i = 0; i < Calls; ++i) sink += rawRgb.isset_Alpha() ? rawRgb.get_Alpha() : 0;
                },
                () => { for (int i = 0; i < Calls; ++i) sink += rgb.Alpha ?? 0; }, true);
        Compare("set a double with bounds", Calls,
                () => { for (int i = 0; i < Calls; ++i) rawRgb.set_Red(0.25); },
                () => { for (int i = 0; i < Calls; ++i) rgb.Red = 0.25; }, true);
        Compare("get an enumerated value", Calls,
                () => { for (int i = 0; i < Calls; ++i) sink += (int)rawRgb.getenum_ColorDepth(); },
                () => { for (int i = 0; i < Calls; ++i) sink += (int)rgb.ColorDepth; }, true);

        using var rawDocument = Raw.Zol.Open(arguments[0]);
        using var document = ZolDocument.Open(arguments[0]);
        Raw.ColorSetType rawSet = rawDocument.get_Palette(0).get_ColorSet(0);
        ColorSet set = document.Palettes[0].ColorSets[0];
        Raw.ColorType rawColor = rawSet.get_Color(0);
        NamedColor color = set.Colors[0];
        Compare("get a text", Calls,
                () => { for (int i = 0; i < Calls; ++i) sink += rawColor.get_ColorName().Length; },
                () => { for (int i = 0; i < Calls; ++i) sink += color.Name.Length; }, true);
        int colors = set.Colors.Count;
        Compare("walk a list, an entry", Walks * colors,
                () =>
                {
                    for (int i = 0; i < Walks; ++i)
                    {
                        for (uint j = 0; j < rawSet.size_Color(); ++j)
                        {
                            sink += rawSet.get_Color(j).size_ColorSpace();
                        }
                    }
                },
                () =>
                {
                    for (int i = 0; i < Walks; ++i)
                    {
                        foreach (NamedColor each in set.Colors) sink += each.Spaces.Count;
                    }
                }, true);

        using var rawSpectrum = new Raw.ColorSpaceSpectralType();
        var spectral = new Spectral { Spectrum = Spectrum.FromRange(380, 10, new double[36]) };
        rawSpectrum.set_points(spectral.Spectrum.Wavelengths.ToArray(), new double[36]);
        Compare("36 points, one by one", Spectra,
                () =>
                {
                    for (int i = 0; i < Spectra; ++i)
                    {
                        for (uint j = 0; j < rawSpectrum.size_ReflectancePoint(); ++j)
                        {
                            sink += rawSpectrum.get_ReflectancePoint(j).get_ReflectancePointType();
                        }
                    }
                },
                () =>
                {
                    for (int i = 0; i < Spectra; ++i)
                    {
                        foreach (ReflectancePoint point in spectral.Points) sink += point.Value;
                    }
                }, false);
        Compare("36 points at once", Spectra,
                () =>
                {
                    for (int i = 0; i < Spectra; ++i)
                    {
                        rawSpectrum.get_points(out double[] _, out double[] values);
                        foreach (double value in values) sink += value;
                    }
                },
                () =>
                {
                    for (int i = 0; i < Spectra; ++i)
                    {
                        foreach (double value in spectral.Spectrum.Values) sink += value;
                    }
                }, false);

        string target = Path.Combine(Path.GetTempPath(), $"zol-bench-{Environment.ProcessId}.zol");
        Compare("open a document", Documents,
                () => { for (int i = 0; i < Documents; ++i) Raw.Zol.Open(arguments[0]).Dispose(); },
                () => { for (int i = 0; i < Documents; ++i) ZolDocument.Open(arguments[0]).Dispose(); },
                false);
        Compare("save it", Documents,
                () => { for (int i = 0; i < Documents; ++i) rawDocument.Save(target); },
                () => { for (int i = 0; i < Documents; ++i) document.Save(target); }, false);
        File.Delete(target);
        if (double.IsNaN(sink)) Console.WriteLine(sink);
        return isTooSlow ? 1 : 0;
    }
}
