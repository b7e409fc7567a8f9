// Tests of the namespace Zol, as one program without a framework.
//
//     dotnet DotnetTests.dll DOCUMENTS

using System.Globalization;
using System.Reflection;
using System.Runtime.CompilerServices;
using System.Text;
using Zol;

internal static class Program
{
    private static string documents = "";
    private static readonly string scratch = Directory.CreateTempSubdirectory("zol-dotnet").FullName;
    private static int failures;

    private static int Main(string[] arguments)
    {
        documents = arguments[0];
        // Whose decimal point is a comma.
        CultureInfo.CurrentCulture = new CultureInfo("de-DE");
        Action[] tests = [
            ReadsEveryProperty, WritesEveryProperty, KeepsWhatItReads, SetsAndClears, RefusesBadValues,
            TellsWhatIsRequired, KnowsTypes, HoldsOneAlternative, AddsCopies, WorksAsAList,
            ListsValues, ForgetsWhatWasRemoved, NoticesReusedAddresses, ComparesObjects,
            KeepsNumbersOfDates, ReadsSpectraAtOnce, OpensFromEverywhere, SavesEverywhere,
            TellsAllThatIsWrong, OutlivesItsDocument, CollectsLostDocuments, DescribesItself,
            DocumentsEveryMember];
        foreach (Action test in tests)
        {
            int before = failures;
            try { test(); }
            catch (Exception exception) { Fail(exception.ToString()); }
            Console.WriteLine($"{(failures == before ? "ok  " : "FAIL")}  {test.Method.Name}");
        }
        Directory.Delete(scratch, true);
        Console.WriteLine(failures == 0 ? "all passed" : $"{failures} failed");
        return failures == 0 ? 0 : 1;
    }

    private static void Fail(string what)
    {
        ++failures;
        Console.WriteLine("  " + what);
    }

    private static void Same<T>(T want, T got, [CallerArgumentExpression(nameof(got))] string what = "")
    {
        if (!EqualityComparer<T>.Default.Equals(want, got)) Fail($"{what}: wanted {want}, got {got}");
    }

    private static T Throws<T>(Action action, [CallerArgumentExpression(nameof(action))] string what = "")
        where T : Exception
    {
        try { action(); }
        catch (T exception) { return exception; }
        throw new InvalidOperationException($"no {typeof(T).Name} for {what}");
    }

    private static string Sample(string name) => Path.Combine(documents, name + ".zol");
    private static string[] Samples => Directory.GetFiles(documents, "*.zol");
    private static string Scratch(string name) => Path.Combine(scratch, name);

    private static readonly DateTimeOffset Noon = new(2026, 1, 2, 12, 0, 0, TimeSpan.FromHours(1));

    // --- Every class -------------------------------------------------------------------------

    private static readonly Type[] Classes = [.. typeof(ZolObject).Assembly.GetExportedTypes()
        .Where(type => type.IsSubclassOf(typeof(ZolObject)))];

    private static IEnumerable<PropertyInfo> OwnProperties(Type type) => type.GetProperties()
        .Where(p => p.DeclaringType != typeof(ZolObject) && p.GetIndexParameters().Length == 0);

    // Everything in an object, as far as properties lead.
    private static int Walk(object? value)
    {
        if (value is System.Collections.IEnumerable list and not string)
        {
            return list.Cast<object>().Sum(Walk);
        }
        if (value is not ZolObject) return 1;
        return 1 + OwnProperties(value.GetType()).Sum(p => Walk(Got(p, value)));
    }

    private static object? Got(PropertyInfo property, object target)
    {
        try { return property.GetValue(target); }
        // A date that no calendar has is in its exact form alone.
        catch (TargetInvocationException e) when (e.InnerException is OverflowException) { return null; }
    }

    private static void ReadsEveryProperty()
    {
        foreach (string sample in Samples)
        {
            using var document = ZolDocument.Open(sample);
            string before = document.ToXml();
            int found = Walk(document);
            if (found < 100) Fail($"only {found} things in {sample}");
            Same(before, document.ToXml(), sample);
        }
    }

    // A value that a property takes, whatever its bounds.
    private static IEnumerable<object> Candidates(Type type)
    {
        type = Nullable.GetUnderlyingType(type) ?? type;
        if (type == typeof(double)) return [0.25];
        if (type == typeof(int)) return [7];
        if (type == typeof(bool)) return [true];
        if (type == typeof(string)) return ["\u00E9", "two words"];
        if (type == typeof(DateTimeOffset)) return [Noon];
        if (type == typeof(ZolDateTime)) return [new ZolDateTime(2001, 2, 31, 4, 5, 6.5f, -90)];
        if (type == typeof(ReadOnlyMemory<byte>)) return [new ReadOnlyMemory<byte>([1, 2, 3])];
        if (type == typeof(Spectrum)) return [Spectrum.FromRange(400, 10, [0.1, 0.2])];
        if (type.IsEnum) return [Enum.GetValues(type).GetValue(1)!];
        Type made = type.IsAbstract ? Classes.First(c => c.IsSubclassOf(type) && !c.IsAbstract) : type;
        return made.IsSubclassOf(typeof(ZolObject)) ? [Activator.CreateInstance(made)!] : [];
    }

    private static void WritesEveryProperty()
    {
        int written = 0;
        foreach (Type type in Classes.Where(c => !c.IsAbstract))
        {
            foreach (PropertyInfo property in OwnProperties(type).Where(p => p.CanWrite))
            {
                var target = (ZolObject)Activator.CreateInstance(type)!;
                object? got = null;
                foreach (object value in Candidates(property.PropertyType))
                {
                    try { property.SetValue(target, value); }
                    catch (TargetInvocationException e) when (e.InnerException is ZolException) { continue; }
                    got = property.GetValue(target);
                    bool isSame = got is ReadOnlyMemory<byte> bytes ? bytes.Length == 3
                        : got is ZolObject or Spectrum || Equals(value, got);
                    if (!isSame) Fail($"{type.Name}.{property.Name}: set {value}, got {got}");
                }
                // One character is all that one row takes.
                if (got is null && property.Name != "Name") Fail($"{type.Name}.{property.Name} took nothing");
                ++written;
            }
        }
        if (written < 300) Fail($"only {written} properties");
    }

    private static void KeepsWhatItReads()
    {
        foreach (string sample in Samples)
        {
            using var document = ZolDocument.Open(sample);
            using var again = ZolDocument.Parse(document.ToXml());
            Same(Walk(document), Walk(again), sample);
            using ZolDocument copy = document.Copy();
            Same(again.ToXml(), copy.ToXml(), sample);
        }
    }

    // --- Values ------------------------------------------------------------------------------

    private static void SetsAndClears()
    {
        var color = new NamedColor { Name = "Gr\u00FCn \U0001F308", UniqueId = "" };
        Same("Gr\u00FCn \U0001F308", color.Name);
        Same("", color.UniqueId);
        Same(null, color.Number);
        color.UniqueId = null;
        Same(null, color.UniqueId);
        Same(null, color.Owner);
        color.Owner = new Owner { Companies = { "Ours" } };
        Same("Ours", color.Owner?.Companies.Single());
        color.Owner = null;
        color.Owner = new Owner();
        Same(0, color.Owner!.Companies.Count, "what was taken away");

        var settings = new DeviceSettings { Aperture = 8, LensPosition = int.MinValue, GridTuner = false };
        Same(8, settings.Aperture);
        Same(int.MinValue, settings.LensPosition);
        Same(false, settings.GridTuner);
        Same(null, settings.GlassCompensation);

        var device = new Device { DeviceClass = DeviceClass.Scanning };
        Same(DeviceClass.Scanning, device.DeviceClass);
        device.DeviceClass = null;
        Same(null, device.DeviceClass);
        Same(AxisScale.Linear, new AxisCoordinate().Scale ?? AxisScale.Linear);

        var specification = new TristimulusSpecification { DevicePolarization = null };
        Same(null, specification.DevicePolarization, "nil");
        specification.DevicePolarization = new DevicePolarization { Value = true };
        Same(true, specification.DevicePolarization?.Value);
        Same(2.0, new DeltaE94().ParamL, "a default");
    }

    private static void RefusesBadValues()
    {
        using var document = ZolDocument.Open(Sample("named-colours"));
        NamedColor color = document.Colors.Add(new NamedColor { Name = "x" });
        var lab = (CieLab)color.Spaces.Add(new CieLab { L = 50 });
        ZolException fault = Throws<ZolException>(() => lab.L = 150.5);
        Same(ErrorCode.ValueTooBig, fault.Code);
        Same("150.5", fault.Value);
        Same("at least 0 and at most 150", fault.Expected);
        Same($"Zol/Color[{document.Colors.Count}]/ColorSpaceCIELab/L", fault.Path);
        Same(50.0, lab.L);
        Same(ErrorCode.ValueTooSmall, Throws<ZolException>(() => lab.L = double.NaN).Code);
        Same(ErrorCode.ValueTooSmall, Throws<ZolException>(() => new DeviceSettings { Aperture = 0 }).Code);
        Same(ErrorCode.ValueNotEnumerated,
             Throws<ZolException>(() => new Device { DeviceClass = (DeviceClass)99 }).Code);
        foreach (string text in new[] { "\uD800", "a\0b" })
        {
            Same(ErrorCode.BadCharEncoding, Throws<ZolException>(() => color.Name = text).Code);
        }
        Same("x", color.Name);
        Throws<ArgumentNullException>(() => document.Preamble.Header = null!);
        Throws<ArgumentException>(() => color.Name = null!);
    }

    private static void TellsWhatIsRequired()
    {
        using var document = new ZolDocument();
        ZolException missing = Throws<ZolException>(() => document.ToXml());
        Same(ErrorCode.OccursOnMarshal, missing.Code);
        Same("Zol/Preamble/Header/Creator", missing.Path);
        Same(true, missing.Message.Contains("is missing", StringComparison.Ordinal));
        Same(ErrorCode.OccursOnMarshal,
             Throws<ZolException>(() => document.Save(Scratch("incomplete.zol"))).Code);
        Same(false, File.Exists(Scratch("incomplete.zol")));
        document.Preamble.Header = NewHeader();
        document.Save(Scratch("complete.zol"));
        Same(0, document.Check().Count);
        document.Colors.Add(new NamedColor { Name = "a\u0001", ChangeHistory = { Noon } });
        Same(2, document.Check().Count(fault => !fault.IsWarning));
        Same(true, document.Check().Any(fault => fault.Message.Contains("U+0001", StringComparison.Ordinal)));
        document.Colors.Clear();
        Same(ErrorCode.UnknownSuffix, Throws<ZolException>(() => document.Save(Scratch("x.xml"))).Code);
    }

    private static Header NewHeader() => new()
    {
        Creator = "DotnetTests", CreatorVersion = "1", Purpose = "Tests", ChangeHistory = { Noon },
    };

    // --- Types and choices -------------------------------------------------------------------

    private static void KnowsTypes()
    {
        using var quality = ZolDocument.Open(Sample("quality-control"));
        var held = quality.QualityControls.SelectMany(control => control.Tolerances)
                          .Select(tolerance => tolerance.Function).OfType<ToleranceCalculation>().First();
        Same(ToleranceKind.CieLabPlusMinus, held.Kind);
        Same(true, held.Parameters.Count > 0);

        using var spaces = ZolDocument.Open(Sample("coverage-spaces"));
        Same(true, spaces.Colors.SelectMany(c => c.Spaces).OfType<CmykPlusN>().Any(c => c.Channels.Count > 0));
        Cmyk first = spaces.Colors.SelectMany(c => c.Spaces).OfType<Cmyk>().First();
        Same(true, spaces.Colors.SelectMany(c => c.Spaces).Any(space => space is Cmyk { Cyan: >= 0 }));

        // A type that only an element names goes where it can be named, and stays what it is.
        var tolerance = new Tolerance { Function = new ToleranceCalculation { Kind = ToleranceKind.DeltaE2000 } };
        Same(ToleranceKind.DeltaE2000, (tolerance.Function as ToleranceCalculation)?.Kind);
        tolerance.Function = new DeltaE94 { ParamC = 3 };
        Same(3.0, (tolerance.Function as DeltaE94)?.ParamC);
        Throws<ArgumentException>(() => tolerance.Function = null);
        GC.KeepAlive(first);
    }

    private static void HoldsOneAlternative()
    {
        var geometry = new MeasurementGeometry();
        Same(MeasurementGeometryKind.None, geometry.Kind);
        geometry.Angle = 45;
        Same(MeasurementGeometryKind.Angle, geometry.Kind);
        Same(null, geometry.SphereGeometry);
        geometry.BsdfAngle = new BsdfAngle { IlluminantAngle = 45, Aspecular = 15 };
        Same(null, geometry.Angle);
        BsdfAngle held = geometry.BsdfAngle;
        Same(15.0, held.Aspecular);
        geometry.SphereGeometry = SphereGeometry.Excluded;
        Throws<ObjectDisposedException>(() => _ = held.Aspecular);
        geometry.Angle = null;
        Same(SphereGeometry.Excluded, geometry.SphereGeometry);
        geometry.SphereGeometry = null;
        Same(MeasurementGeometryKind.None, geometry.Kind);

        var light = new Illumination { ColorTemperature = 6504 };
        light.Description = "daylight";
        Same(6504, light.ColorTemperature);
        light.WhitePointChromaticity = new WhitePointChromaticity { CoordinateX = 0.3127 };
        WhitePointChromaticity white = light.WhitePointChromaticity;
        light.Description = "measured";
        Same(0.3127, white.CoordinateX, "an attribute is no alternative");
        Same(null, light.ColorTemperature);
        Same("x", new TagValue { Content = new TagContent { TextValue = "x" } }.Content.TextValue);
    }

    // --- Lists -------------------------------------------------------------------------------

    private static void AddsCopies()
    {
        using var document = new ZolDocument();
        var own = new NamedColor { Name = "own", Spaces = { new CieLab { L = 1 }, new Rgb { Red = 0.5 } } };
        NamedColor added = document.Colors.Add(own);
        own.Name = "changed";
        Same("own", added.Name);
        Same(document, added.Document);
        Same(null, own.Document);
        Same<ZolObject?>(document, added.Parent);
        Same("Zol/Color[1]/ColorSpaceRGB", added.Spaces[1].Path);
        document.Colors.AddRange(document.Colors);
        Same(2, document.Colors.Count);
        Same("Zol/Color[2]", document.Colors[1].Path);
        // Of another document, and of a class that cannot stand there.
        using var other = new ZolDocument();
        Same("own", other.Colors.Add(added).Name);
        Throws<ArgumentException>(() => added.Spaces.Add((ColorSpace)null!));
        // A part of what it replaces.
        var paper = new PaperSubstrate { Color = new NamedColor { Name = "white" } };
        own.Substrate = paper;
        document.Colors[0] = own;
        document.Colors[0] = document.Colors[0].Substrate!.Color!;
        Same("white", document.Colors[0].Name);
    }

    private static void WorksAsAList()
    {
        using var document = new ZolDocument();
        IList<NamedColor> colors = document.Colors;
        for (int i = 0; i < 5; ++i) colors.Add(new NamedColor { Name = i.ToString(CultureInfo.InvariantCulture) });
        string Names() => string.Concat(document.Colors.Select(c => c.Name));
        Same("01234", Names());
        colors.Insert(1, new NamedColor { Name = "x" });
        Same("0x1234", Names());
        colors.RemoveAt(0);
        Same(true, colors.Remove(colors[0]));
        Same("1234", Names());
        colors[1] = new NamedColor { Name = "y" };
        Same("1y34", Names());
        Same(1, document.Colors.RemoveAll(color => color.Name == "3"));
        Same("1y4", Names());
        Same(2, colors.IndexOf(colors[2]));
        Same(-1, colors.IndexOf(new NamedColor()));
        foreach (int wrong in new[] { -1, 3, int.MaxValue })
        {
            Throws<ArgumentOutOfRangeException>(() => _ = colors[wrong]);
            Throws<ArgumentOutOfRangeException>(() => colors.RemoveAt(wrong));
            Throws<ArgumentOutOfRangeException>(() => colors[wrong] = new NamedColor());
        }
        Throws<ArgumentOutOfRangeException>(() => colors.Insert(4, new NamedColor()));
        Throws<InvalidOperationException>(() => { foreach (NamedColor color in colors) colors.Remove(color); });
        var array = new NamedColor[2];
        colors.CopyTo(array, 0);
        Throws<ArgumentException>(() => colors.CopyTo(array, 1));
        Same("4", array[1].Name);
        colors.Clear();
        Same(0, colors.Count);
    }

    private static void ListsValues()
    {
        var color = new NamedColor();
        ZolValueList<string> words = color.SemanticAssociations;
        words.AddRange(["warm", "", "\U0001F308"]);
        words.Insert(0, "first");
        words[1] = "warmer";
        Same("first|warmer||\U0001F308", string.Join('|', words));
        Same(3, words.IndexOf("\U0001F308"));
        Same(true, words.Remove(""));
        Throws<ArgumentOutOfRangeException>(() => _ = words[3]);
        Throws<ZolException>(() => words.Add("\0"));
        Throws<ArgumentNullException>(() => words.Add(null!));
        Same(3, words.Count);
        words.Clear();
        Same(0, words.ToArray().Length);

        var elements = new Revision().Elements;
        elements.Add(new ForeignElement("<a:x xmlns:a='http://example.org/a'><a:y/>t</a:x>"));
        Same("<a:x xmlns:a='http://example.org/a'><a:y/>t</a:x>", elements[0].Text);
        elements[0] = new ForeignElement("<z/>");
        Same("<z/>", elements.Single().Text);
        foreach (string wrong in new[] { "", "text", "<a/><b/>", "<a>", "<a:b/>", "<!DOCTYPE x><x/>" })
        {
            Throws<ArgumentException>(() => _ = new ForeignElement(wrong));
        }
        using var frame = ZolDocument.Open(Sample("coverage-frame"));
        ForeignElement read = frame.Preamble.Header.Revisions[0].Elements[0];
        Same("a:approval", read.FullName);
        Same("http://example.org/approval", read.NamespaceUri);
        Same(read.FullName, new ForeignElement(read.Text).FullName);
    }

    // --- Lifetime ----------------------------------------------------------------------------

    private static void ForgetsWhatWasRemoved()
    {
        using var document = new ZolDocument();
        for (int i = 0; i < 3; ++i)
        {
            document.Colors.Add(new NamedColor { Name = $"{i}", Spaces = { new CieLab { L = i } } });
        }
        NamedColor[] colors = [.. document.Colors];
        var labs = colors.Select(color => (CieLab)color.Spaces[0]).ToArray();
        ZolList<ColorSpace> spaces = colors[1].Spaces;
        document.Colors.RemoveAt(1);
        Throws<ObjectDisposedException>(() => _ = colors[1].Name);
        Throws<ObjectDisposedException>(() => _ = labs[1].L);
        Throws<ObjectDisposedException>(() => spaces.Add(new CieLab()));
        Same(true, colors[1].IsRemoved && labs[1].IsRemoved);
        Same(2.0, labs[2].L, "its neighbour");
        Same("2", colors[2].Name);
        colors[2].Spaces.Clear();
        Throws<ObjectDisposedException>(() => labs[2].L = 1);
        Same("2", colors[2].Name);
        labs[0].Specification = new TristimulusSpecification { Gamma = 2.2 };
        TristimulusSpecification? specification = labs[0].Specification;
        labs[0].Specification = null;
        Throws<ObjectDisposedException>(() => _ = specification!.Gamma);
        Header header = document.Preamble.Header;
        document.Preamble = new Preamble();
        Throws<ObjectDisposedException>(() => _ = header.Name);
        document.Dispose();
        foreach (ZolObject gone in new ZolObject[] { document, colors[0], labs[0] })
        {
            Throws<ObjectDisposedException>(() => _ = gone.Path);
            Same(true, gone.ToString()!.EndsWith("(removed)", StringComparison.Ordinal));
        }
        document.Dispose();
    }

    private static void NoticesReusedAddresses()
    {
        // An allocator gives back at once what it was given.
        using var document = new ZolDocument();
        var old = new List<NamedColor>();
        for (int i = 0; i < 1000; ++i)
        {
            old.Add(document.Colors.Add(new NamedColor { Name = "old" }));
            document.Colors.RemoveAt(0);
            NamedColor now = document.Colors.Add(new NamedColor { Name = "new" });
            Same("new", now.Name);
            Same(false, now.Equals(old[^1]));
            document.Colors.Clear();
        }
        document.Colors.Add(new NamedColor { Name = "last" });
        foreach (NamedColor color in old) Same(true, color.IsRemoved);
    }

    private static void ComparesObjects()
    {
        using var document = ZolDocument.Open(Sample("quality-control"));
        NamedColor color = document.QualityControls[0].StandardAndMeasurements[0].Standard!.Color;
        NamedColor again = document.QualityControls[0].StandardAndMeasurements[0].Standard!.Color;
        Same(false, ReferenceEquals(color, again));
        Same(color, again);
        Same(1, new HashSet<NamedColor> { color, again }.Count);
        Same(false, color.Equals(color.Copy()));
        Same(false, color.Equals(null));
    }

    private static void KeepsNumbersOfDates()
    {
        var color = new NamedColor { ChangeHistory = { Noon, new ZolDateTime(2001, 2, 31, 0, 0, 0, 0) } };
        Same(Noon, color.ChangeHistory[0].ToDateTimeOffset());
        Same("2026-01-02T12:00:00+01:00", color.ChangeHistory[0].ToString());
        Same(false, color.ChangeHistory[1].TryGetDateTimeOffset(out _));
        Throws<OverflowException>(() => color.ChangeHistory[1].ToDateTimeOffset());
        Throws<ZolException>(() => color.ChangeHistory.Add(new ZolDateTime(1, 100, 1, 0, 0, 0, 0)));
        Same(2, color.ChangeHistory.Count);
        foreach (string time in new[] { "23:59:59.99", "00:00:00.12345", "12:30:00" })
        {
            var moment = DateTimeOffset.Parse($"2026-06-15T{time}-05:30", CultureInfo.InvariantCulture);
            color.ChangeHistory[0] = moment;
            Same(moment, color.ChangeHistory[0].ToDateTimeOffset());
        }
        var profile = new ColorProfile { Created = Noon.ToUniversalTime() };
        Same(Noon, profile.Created);
        Same(true, profile.CreatedExact?.IsUtc);
        profile.Created = null;
        Same(null, profile.Created);
        Same(null, profile.CreatedExact);
    }

    private static void ReadsSpectraAtOnce()
    {
        using var document = ZolDocument.Open(Sample("spectra"));
        foreach (Spectral space in Everything(document).OfType<Spectral>())
        {
            Spectrum spectrum = space.Spectrum;
            Same(space.Points.Count, spectrum.Count);
            Same(space.Points[^1].Value, spectrum.Values[^1]);
            Same(space.Points[0].Wavelength, spectrum[0].Wavelength);
        }
        var own = new Spectral { Spectrum = Spectrum.FromRange(300, 1, new double[500]) };
        Same(500, own.Spectrum.Count);
        Same(799.0, own.Spectrum.Wavelengths[^1]);
        ReflectancePoint point = own.Points[0];
        ZolException fault = Throws<ZolException>(() => own.Spectrum = new Spectrum([400, 410], [0.5, 10]));
        Same(ErrorCode.ValueTooBig, fault.Code);
        Same("410 nm: 10", fault.Value);
        Same(500, own.Spectrum.Count);
        Same(300.0, point.Wavelength, "nothing was changed");
        own.Spectrum = new Spectrum([], []);
        Same(0, own.Points.Count);
        Throws<ObjectDisposedException>(() => _ = point.Wavelength);
        Throws<ArgumentException>(() => _ = new Spectrum([1], []));
    }

    private static IEnumerable<ZolObject> Everything(ZolDocument document) =>
        document.Palettes.SelectMany(p => p.ColorSets).SelectMany(s => s.Colors)
                .Concat(document.Colors).SelectMany(c => c.Spaces);

    // --- Files -------------------------------------------------------------------------------

    private static void OpensFromEverywhere()
    {
        string path = Sample("named-colours"), text = File.ReadAllText(path);
        using var file = ZolDocument.Open(path);
        int size = file.Palettes.Sum(p => p.ColorSets.Sum(s => s.Colors.Count));
        file.Save(Scratch("a.zolz"));
        using FileStream archive = File.OpenRead(Scratch("a.zolz")), plain = File.OpenRead(path);
        ZolDocument[] others = [
            ZolDocument.Open(Scratch("a.zolz")), ZolDocument.Open(archive), ZolDocument.Parse(text),
            ZolDocument.Parse(File.ReadAllBytes(Scratch("a.zolz"))),
            ZolDocument.OpenAsync(path).Result, ZolDocument.OpenAsync(plain).Result,
            ZolDocument.Parse(text.Replace("utf-8", "UTF-16", StringComparison.OrdinalIgnoreCase)),
            ZolDocument.Open(new MemoryStream(Encoding.Unicode.GetPreamble().Concat(
                Encoding.Unicode.GetBytes(text.Replace("UTF-8", "UTF-16", StringComparison.OrdinalIgnoreCase)))
                .ToArray()))];
        foreach (ZolDocument other in others)
        {
            Same(size, other.Palettes.Sum(p => p.ColorSets.Sum(s => s.Colors.Count)));
            other.Dispose();
        }
        using var canceled = new CancellationTokenSource();
        canceled.Cancel();
        Throws<AggregateException>(() => ZolDocument.OpenAsync(path, canceled.Token).Wait());
    }

    private static void SavesEverywhere()
    {
        using var document = ZolDocument.Open(Sample("quality-control"));
        string name = Scratch("\u65E5\u672C \U0001F308.zol");
        document.Save(name);
        using var plain = new MemoryStream();
        document.Save(plain);
        Same(File.ReadAllText(name), Encoding.UTF8.GetString(plain.ToArray()));
        using var packed = new MemoryStream();
        document.SaveAsync(packed, ZolFormat.Archive).Wait();
        packed.Position = 0;
        using var again = ZolDocument.Open(packed);
        Same(document.ToXml(), again.ToXml());
        document.SaveAsync(Scratch("b.zolz")).Wait();
        Same(true, File.Exists(Scratch("b.zolz")));
        Same(ErrorCode.NoFile, Throws<ZolException>(() => document.Save(Scratch("absent/x.zol"))).Code);
    }

    private static void TellsAllThatIsWrong()
    {
        string text = File.ReadAllText(Sample("quality-control"));
        ZolException fault = Throws<ZolException>(
            () => ZolDocument.Parse(text.Replace("<Zol:Result>", "<Zol:Result>x", StringComparison.Ordinal)));
        Same(ErrorCode.BadValueFormat, fault.Code);
        Same(73, fault.Line);
        Same(true, fault.Faults.Count > 1);
        Same(true, fault.Path?.EndsWith("/FunctionDE/Result", StringComparison.Ordinal));
        Same("x0.805854", fault.Value);
        Same(true, fault.Message.Contains("line 73", StringComparison.Ordinal));
        Same(ErrorCode.NoFile, Throws<ZolException>(() => ZolDocument.Open(Scratch("none.zol"))).Code);
        foreach (int length in new[] { 0, 1, 100, text.LastIndexOf("</", StringComparison.Ordinal) })
        {
            Throws<ZolException>(() => ZolDocument.Parse(text[..length]));
        }
        File.WriteAllText(Scratch("no.zolz"), "this is no archive");
        Same(ErrorCode.Unusable, Throws<ZolException>(() => ZolDocument.Open(Scratch("no.zolz"))).Code);
        Throws<ArgumentNullException>(() => ZolDocument.Open((string)null!));
        Throws<ArgumentException>(() => ZolDocument.Open("a\0b.zol"));
    }

    // --- Memory ------------------------------------------------------------------------------

    [MethodImpl(MethodImplOptions.NoInlining)]
    private static CieLab Lost() => Everything(ZolDocument.Open(Sample("named-colours"))).OfType<CieLab>().First();

    private static void OutlivesItsDocument()
    {
        CieLab lab = Lost();
        double lightness = lab.L;
        for (int i = 0; i < 3; ++i)
        {
            GC.Collect();
            GC.WaitForPendingFinalizers();
        }
        Same(lightness, lab.L);
        Same(true, lab.Document!.Palettes.Count > 0);
    }

    private static long Resident()
    {
        string line = File.ReadAllLines("/proc/self/status").First(l => l.StartsWith("VmRSS", StringComparison.Ordinal));
        return long.Parse(line.Where(char.IsDigit).ToArray(), CultureInfo.InvariantCulture) >> 10;
    }

    private static void CollectsLostDocuments()
    {
        for (int i = 0; i < 50; ++i) _ = ZolDocument.Open(Sample("named-colours"));
        long before = Resident();
        for (int i = 0; i < 600; ++i) _ = ZolDocument.Open(Sample("named-colours"));
        if (Resident() - before > 250) Fail($"{Resident() - before} MiB stay after 600 lost documents");
    }

    // --- What people see ---------------------------------------------------------------------

    private static void DescribesItself()
    {
        Same("CieLab L: 50.5 A: -1 B: 0.25", new CieLab { L = 50.5, A = -1, B = 0.25 }.ToString());
        Same("NamedColor Name: \"red\"", new NamedColor { Name = "red" }.ToString());
        Same("ReflectancePoint Wavelength: 400 Value: 0.5",
             new ReflectancePoint { Wavelength = 400, Value = 0.5 }.ToString());
        Same("2 of CieLab", $"2 of {nameof(CieLab)}");
        Same("1 of ColorSpace", new NamedColor { Spaces = { new CieLab() } }.Spaces.ToString());
    }

    private static void DocumentsEveryMember()
    {
        string text = File.ReadAllText(Path.ChangeExtension(typeof(ZolObject).Assembly.Location, ".xml"));
        foreach (string said in new[] {
            "At least 0 and at most 150.", "In nm; more than 0.", "Minus the decadic logarithm" })
        {
            if (!text.Contains(said, StringComparison.Ordinal)) Fail("no documentation says " + said);
        }
    }
}
