// What a colour laboratory does with documents, from C#:
//
//     dotnet LabTool.dll show DOCUMENT...             what is in them
//     dotnet LabTool.dll control DOCUMENT RECORD      measures the colours and writes a record
//     dotnet LabTool.dll check DOCUMENT...            what is wrong with them
//     dotnet LabTool.dll thin DOCUMENT TARGET         keeps every second colour
//     dotnet LabTool.dll merge TARGET DOCUMENT...     reads them at once, and writes one
//     dotnet LabTool.dll churn COUNT                  makes so many colours, and looks at the memory
//
// Status 0 if all went well, 1 if not, 2 for a command that it does not know.

using System.Diagnostics;
using System.Globalization;
using Zol;

internal static class LabTool
{
    private static int Main(string[] arguments)
    {
        // A German laboratory: what people read has a comma, what documents hold does not.
        CultureInfo.CurrentCulture = new CultureInfo("de-DE");
        try
        {
            return arguments switch
            {
                ["show", .. { Length: > 0 } paths] => Show(paths),
                ["control", string source, string record] => Control(source, record),
                ["check", .. { Length: > 0 } paths] => Check(paths),
                ["thin", string source, string target] => Thin(source, target),
                ["merge", string target, .. { Length: > 0 } paths] => Merge(target, paths).Result,
                ["churn", string count] => Churn(int.Parse(count, CultureInfo.InvariantCulture)),
                _ => Unknown(),
            };
        }
        catch (ZolException fault)
        {
            Console.Error.WriteLine($"{fault.Code}: {fault.Message}");
            return 1;
        }
    }

    private static int Unknown()
    {
        Console.Error.WriteLine("LabTool show|control|check|thin|merge|churn ...");
        return 2;
    }

    // All colours of a document, wherever they stand.
    private static IEnumerable<NamedColor> ColorsOf(ZolDocument document) =>
        document.Palettes.SelectMany(palette => palette.ColorSets).SelectMany(set => set.Colors)
                .Concat(document.Colors);

    // --- show -----------------------------------------------------------------------------------

    private static int Show(string[] paths)
    {
        foreach (string path in paths)
        {
            using var document = ZolDocument.Open(path);
            Header header = document.Preamble.Header;
            Console.WriteLine($"{Path.GetFileName(path)}: {header.Creator} {header.CreatorVersion}, " +
                              $"{Day(header.ChangeHistory)}, {header.Purpose}");
            foreach (Palette palette in document.Palettes)
            {
                Console.WriteLine($"  Palette {palette.Name}");
                foreach (ColorSet set in palette.ColorSets)
                {
                    Console.WriteLine($"    {set.Name}: {set.Colors.Count} colours");
                }
            }
            foreach (NamedColor color in ColorsOf(document).Take(5))
            {
                Console.WriteLine($"    {color.Name}: {string.Join("; ", color.Spaces.Select(Told))}");
            }
            foreach (var kind in ColorsOf(document).SelectMany(color => color.Spaces)
                                                   .GroupBy(space => space.GetType().Name)
                                                   .OrderByDescending(group => group.Count()))
            {
                Console.WriteLine($"  {kind.Count(),6} {kind.Key}");
            }
        }
        return 0;
    }

    private static string Day(ZolValueList<ZolDateTime> changes) =>
        changes.Count > 0 && changes[^1].TryGetDateTimeOffset(out DateTimeOffset last)
            ? last.ToString("d", CultureInfo.CurrentCulture) : "at no known time";

    private static string Told(ColorSpace space) => space switch
    {
        CieLab lab => $"L* {lab.L:F2} a* {lab.A:F2} b* {lab.B:F2}",
        Spectral { Points.Count: > 0 } spectral => $"{spectral.Spectrum}, at most {Peak(spectral):P1}",
        CmykPlusN cmyk => $"CMYK and {cmyk.Channels.Count} more",
        Rgb or Srgb or AdobeRgb => "RGB",
        _ => space.GetType().Name,
    };

    private static double Peak(Spectral spectral)
    {
        double peak = 0;
        foreach (double value in spectral.Spectrum.Values) peak = Math.Max(peak, value);
        return peak;
    }

    // --- control --------------------------------------------------------------------------------

    private const double Limit = 1.5;

    // An instrument that is never quite the same twice.
    private sealed class Instrument
    {
        private readonly Random noise = new(20260102);

        public Device Description => new()
        {
            Manufacturer = "Example Instruments", Model = "Sphere 8", SerialNumber = "0042",
            DeviceClass = DeviceClass.Spot,
            DeviceSettings = new DeviceSettings { Aperture = 8, GlossCompensation = null },
        };

        public CieLab Measure(CieLab standard)
        {
            CieLab measured = standard.Copy();
            measured.L = Math.Clamp(standard.L + Drift(), 0, 150);
            measured.A = Math.Clamp(standard.A + Drift(), -150, 150);
            measured.B = Math.Clamp(standard.B + Drift(), -150, 150);
            measured.ChangeHistory.Clear();
            measured.ChangeHistory.Add(DateTimeOffset.Now);
            return measured;
        }

        private double Drift() => (noise.NextDouble() - 0.5) * 2;
    }

    private static double Difference(CieLab a, CieLab b) =>
        Math.Sqrt(Math.Pow(a.L - b.L, 2) + Math.Pow(a.A - b.A, 2) + Math.Pow(a.B - b.B, 2));

    private static int Control(string source, string path)
    {
        using var document = ZolDocument.Open(source);
        var instrument = new Instrument();
        QualityControl record = document.QualityControls.Add(new QualityControl
        {
            Name = "Daily control", Description = "Every colour with CIELAB, measured once",
            ChangeHistory = { DateTimeOffset.Now },
            Tolerances =
            {
                new Tolerance
                {
                    Name = "House", PrimaryIlluminant = Illuminant.D50,
                    FieldOfView = FieldOfView.Degrees2,
                    WarningLevel = Limit * 0.8, Limits = new ToleranceLimits { HighTolerance = Limit },
                    Function = new DeltaE(),
                },
            },
        });
        foreach (NamedColor color in ColorsOf(document))
        {
            if (color.Spaces.OfType<CieLab>().FirstOrDefault() is not CieLab standard) continue;
            CieLab measured = instrument.Measure(standard);
            record.StandardAndMeasurements.Add(new StandardAndMeasurements
            {
                Standard = new Standard { Device = instrument.Description, Color = color },
                Measurements =
                {
                    new Measurement
                    {
                        Device = instrument.Description,
                        Color = new NamedColor
                        {
                            Name = color.Name, ChangeHistory = { DateTimeOffset.Now },
                            Spaces = { measured },
                        },
                        Results = { new DeltaE { Result = Difference(standard, measured) } },
                    },
                },
            });
        }
        document.Save(path);
        return Judge(path);
    }

    // Reads the record as somebody else would.
    private static int Judge(string path)
    {
        using var document = ZolDocument.Open(path);
        QualityControl record = document.QualityControls[^1];
        double limit = record.Tolerances[0].Limits!.HighTolerance;
        int passed = 0, failed = 0;
        foreach (StandardAndMeasurements pair in record.StandardAndMeasurements)
        {
            Measurement measurement = pair.Measurements[0];
            double result = ((DeltaE)measurement.Results[0]).Result ?? double.NaN;
            double again = Difference((CieLab)measurement.Color.Spaces[0],
                                      pair.Standard!.Color.Spaces.OfType<CieLab>().First());
            Trace.Assert(Math.Abs(result - again) < 1e-9, measurement.Path);
            if (result <= limit) ++passed;
            else ++failed;
        }
        Console.WriteLine($"{record.Name}: {passed} passed, {failed} failed at a limit of {limit:F1}");
        return passed > failed ? 0 : 1;
    }

    // --- check ----------------------------------------------------------------------------------

    private static int Check(string[] paths)
    {
        int wrong = 0;
        foreach (string path in paths)
        {
            try
            {
                using var document = ZolDocument.Open(path);
                Console.WriteLine($"{path}: good");
            }
            catch (ZolException fault)
            {
                ++wrong;
                Console.WriteLine($"{path}: {fault.Message}");
                foreach (ZolFault one in fault.Faults)
                {
                    Console.WriteLine($"  {one}");
                }
            }
        }
        return wrong == 0 ? 0 : 1;
    }

    // --- thin -----------------------------------------------------------------------------------

    private static int Thin(string source, string target)
    {
        using var document = ZolDocument.Open(source);
        int before = ColorsOf(document).Count();
        foreach (ColorSet set in document.Palettes.SelectMany(palette => palette.ColorSets))
        {
            int number = 0;
            set.Colors.RemoveAll(color => number++ % 2 == 1);
        }
        document.Preamble.Header.ChangeHistory.Add(DateTimeOffset.Now);
        document.Save(target);
        using var thinned = ZolDocument.Open(target);
        Console.WriteLine($"{before} colours became {ColorsOf(thinned).Count()}");
        return ColorsOf(thinned).Count() < before ? 0 : 1;
    }

    // --- merge ----------------------------------------------------------------------------------

    private static async Task<int> Merge(string target, string[] paths)
    {
        ZolDocument[] sources = await Task.WhenAll(paths.Select(path => ZolDocument.OpenAsync(path)));
        using var merged = new ZolDocument
        {
            Preamble = new Preamble
            {
                Header = new Header
                {
                    Creator = "LabTool", CreatorVersion = "1.0", Purpose = "One of many",
                    ChangeHistory = { DateTimeOffset.UtcNow },
                },
            },
        };
        foreach (ZolDocument source in sources)
        {
            merged.Palettes.AddRange(source.Palettes);
            merged.Colors.AddRange(source.Colors);
            source.Dispose();
        }
        await merged.SaveAsync(target);
        using ZolDocument again = await ZolDocument.OpenAsync(target);
        Console.WriteLine($"{paths.Length} documents, {ColorsOf(again).Count()} colours");
        return ColorsOf(again).Count() == ColorsOf(merged).Count() ? 0 : 1;
    }

    // --- churn ----------------------------------------------------------------------------------

    // Writes into the log when nobody keeps it any more, which may be at any time.
    private sealed class Shift(ZolDocument document)
    {
        public static int Ended, Colors;

        ~Shift()
        {
            Interlocked.Add(ref Colors, document.Colors.Count);
            Interlocked.Increment(ref Ended);
        }
    }

    private static int Churn(int count)
    {
        const int Batch = 1000;
        // Of the 500 bytes or so that a colour with a space takes; heaps breathe.
        const int Noticed = 200;
        int threads = Math.Max(2, Environment.ProcessorCount), batches = count / Batch;
        Work(batches / 2, threads);  // warm
        long before = Environment.WorkingSet;
        var watch = Stopwatch.StartNew();
        Work(batches, threads);
        double seconds = watch.Elapsed.TotalSeconds;
        GC.Collect();
        GC.WaitForPendingFinalizers();
        long grown = (Environment.WorkingSet - before) >> 20;
        Console.WriteLine($"{count:N0} colours in {seconds:F1} s on {threads} threads, {grown} MiB " +
                          $"more; the collector ended {Shift.Ended} shifts with {Shift.Colors:N0}");
        return grown << 20 < (long)Noticed * count && Shift.Ended > 0 ? 0 : 1;

        // Nobody disposes of anything here.
        static void Work(int batches, int threads) => Parallel.For(
            0, batches, new ParallelOptions { MaxDegreeOfParallelism = threads }, batch =>
            {
                var document = new ZolDocument();
                _ = new Shift(document);
                for (int i = 0; i < Batch; ++i)
                {
                    NamedColor color = document.Colors.Add(new NamedColor { Name = $"{batch}/{i}" });
                    color.Spaces.Add(new CieLab { L = i % 100, A = batch % 100 });
                }
                double sum = 0;
                foreach (NamedColor color in document.Colors) sum += ((CieLab)color.Spaces[0]).L;
                Trace.Assert(sum == Batch / 100 * 4950, "a colour was lost");
            });
    }
}
