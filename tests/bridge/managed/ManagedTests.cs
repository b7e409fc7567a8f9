// Tests of the managed classes, as one program without a framework.
//
//     mono ManagedTests.exe RESAVE DOCUMENTS
//     mono ManagedTests.exe --misfit
//
// RESAVE is a native program that opens its first argument and saves it as its second; DOCUMENTS is
// the directory of the sample documents.

using System;
using System.Collections.Generic;
using System.IO;
using System.Linq;
using System.Reflection;
using System.Runtime.CompilerServices;
using System.Runtime.InteropServices;

namespace ManagedTests
{

// Inside of the namespace, where they come before the namespace Zol.
using Zol.Interop;
using ErrorCode = global::Zol.ErrorCode;
using Process = System.Diagnostics.Process;
using Version = Zol.Interop.Version;
using ZolDateTime = global::Zol.ZolDateTime;
using ZolException = global::Zol.ZolException;

internal static class Program
{
  private static string resave, documents, scratch;
  private static int failures;

  private static int Main(string[] arguments)
  {
    if (arguments[0] == "--misfit") return RefusesAnotherLibrary();
    resave = arguments[0];
    documents = arguments[1];
    scratch = Path.Combine(Path.GetTempPath(), "zol-managed-" + Process.GetCurrentProcess().Id);
    Directory.CreateDirectory(scratch);
    Run(FindsEveryExport);
    Run(CallsEveryMethodOfEveryClass);
    Run(SavesWhatTheNativeRoadSaves);
    Run(WritesTheTextThatItSaves);
    Run(ReportsFaults);
    Run(SurvivesWhatTheNativeFunctionsThrow);
    Run(CarriesTextBothWays);
    Run(CarriesNarrowTextBothWays);
    Run(RaisesForNull);
    Run(RefusesIndicesPastTheEnd);
    Run(KnowsValueClasses);
    Run(ChoosesAndNumbersAlternatives);
    Run(BuildsDerivedProxies);
    Run(KeepsParentsAlive);
    Run(RefusesDisposedProxies);
    Run(FinalizesWhatWasNotDisposed);
    Run(CollectsLostDocuments);
    Run(LetsFinalizersUseTheirDocuments);
    Run(KnowsTheTypeOfWhatItFinds);
    Run(KeepsTheRowsOfDerivedTypes);
    Run(ReadingChangesNothing);
    Run(GivesWholeValues);
    Run(ShowsNoAddresses);
    Run(TextLeavesNoMemoryBehind);
    Directory.Delete(scratch, true);
    Console.WriteLine(failures == 0 ? "all passed" : failures + " failed");
    return failures == 0 ? 0 : 1;
  }

  // Run by itself, beside a library of other tables.
  private static int RefusesAnotherLibrary()
  {
    try { new Zol().Dispose(); }
    catch (TypeInitializationException exception)
    {
      string reason = exception.InnerException.Message;
      Same("The native library zol 9.8.7 does not fit this assembly, which is 2.1.0.", reason, "why");
      return failures;
    }
    return 1;
  }

  private static void Run(Action test)
  {
    int before = failures;
    try { test(); }
    catch (Exception exception) { Fail(exception.ToString()); }
    Console.WriteLine("{0}  {1}", failures == before ? "ok  " : "FAIL", test.Method.Name);
  }

  private static void Fail(string what)
  {
    ++failures;
    Console.WriteLine("  " + what);
  }

  private static void Same<T>(T want, T got, string what)
  {
    if (!Equals(want, got)) Fail(what + ": wanted " + want + ", got " + got);
  }

  private static void Throws<T>(string message, Action action) where T : Exception
  {
    try { action(); }
    catch (T exception)
    {
      if (message != null && !exception.Message.Contains(message))
      {
        Fail("wanted the message '" + message + "', got '" + exception.Message + "'");
      }
      return;
    }
    Fail("no " + typeof(T).Name + " for " + message);
  }

  private static string Scratch(string name) { return Path.Combine(scratch, name); }

  private static IEnumerable<string> Samples()
  {
    string[] samples = Directory.GetFiles(documents, "*.zol");
    if (samples.Length == 0) Fail("no sample documents");
    return samples;
  }

  private static string Sample(string name) { return Path.Combine(documents, name + ".zol"); }

  private static readonly Assembly assembly = typeof(Zol).Assembly;

  private static void FindsEveryExport()
  {
    const int Helpers = 23;  // zol_..., beside the exports
    int found = 0;
    Type native = assembly.GetType("Zol.Interop.Native");
    foreach (MethodInfo import in native.GetMethods(BindingFlags.Static | BindingFlags.NonPublic))
    {
      if (!import.IsDefined(typeof(DllImportAttribute), false)) continue;
      ++found;
      try { Marshal.Prelink(import); }
      catch (EntryPointNotFoundException) { Fail(import.Name + " is not exported"); }
    }
    Same(3993 + Helpers, found, "imports");
  }

  // An argument that every method takes, if only to refuse it.
  private static object Argument(Type type)
  {
    if (type == typeof(string)) return "x";
    return type.IsValueType ? Activator.CreateInstance(type) : null;
  }

  private static void Call(object target, MethodBase method)
  {
    object[] arguments = method.GetParameters().Select(p => Argument(p.ParameterType)).ToArray();
    try { method.Invoke(target, arguments); }
    catch (TargetInvocationException exception)
    {
      // Null and an index past the end are refused.
      if (!(exception.InnerException is ArgumentException)) throw exception.InnerException;
    }
  }

  private static void CallsEveryMethodOfEveryClass()
  {
    const BindingFlags Own =
      BindingFlags.Public | BindingFlags.Instance | BindingFlags.Static | BindingFlags.DeclaredOnly;
    int classes = 0, calls = 0;
    foreach (Type type in assembly.GetExportedTypes().Where(typeof(Proxy).IsAssignableFrom))
    {
      ConstructorInfo plain = type.GetConstructor(Type.EmptyTypes);
      if (plain == null) continue;
      ++classes;
      using (Proxy target = (Proxy)plain.Invoke(null))
      {
        foreach (MethodInfo method in type.GetMethods(Own))
        {
          // What id_set sets would outlive the test.
          if (new[] { "id_set", "Open", "Save" }.Contains(method.Name)) continue;
          Call(target, method);
          ++calls;
        }
      }
    }
    Same(231, classes, "classes that can be made from nothing");
    if (calls < 2700) Fail("only " + calls + " calls");
  }

  private static void SavesWhatTheNativeRoadSaves()
  {
    foreach (string sample in Samples())
    {
      foreach (string suffix in new[] { ".zol", ".zolz" })
      {
        string name = Path.GetFileNameWithoutExtension(sample);
        string mine = Scratch(name + suffix), theirs = Scratch("native/" + name + suffix);
        Directory.CreateDirectory(Scratch("native"));
        using (Zol document = Zol.Open(sample)) document.Save(mine);
        using (Process native = Process.Start(resave, "\"" + sample + "\" \"" + theirs + "\""))
        {
          native.WaitForExit();
          Same(0, native.ExitCode, "native road of " + name + suffix);
        }
        // An archive carries the time of its file; its text is compared once it is opened again.
        string left = mine, right = theirs;
        if (suffix == ".zolz")
        {
          left = Scratch("left.zol");
          right = Scratch("right.zol");
          using (Zol document = Zol.Open(mine)) document.Save(left);
          using (Zol document = Zol.Open(theirs)) document.Save(right);
        }
        if (!File.ReadAllBytes(left).SequenceEqual(File.ReadAllBytes(right)))
        {
          Fail(name + suffix + " differs from the native one");
        }
      }
    }
  }

  private static void WritesTheTextThatItSaves()
  {
    foreach (string sample in Samples())
    {
      using (Zol document = new Zol())
      {
        Same(elmx_error.elmx_ok, document.loadString(File.ReadAllText(sample)), sample);
        Same(elmx_error.elmx_ok, document.writeFile(Scratch("written.zol")), sample);
        using (XMLDocumentResult result = document.writeString())
        {
          Same(elmx_error.elmx_ok, result.getElmxError(), sample);
          Same(File.ReadAllText(Scratch("written.zol")), result.getXmlDocument(), sample);
        }
      }
    }
    using (Zol bare = new Zol())
    using (XMLDocumentResult result = bare.writeString())
    {
      Same(elmx_error.elmx_occurs_on_marshal, result.getElmxError(), "a bare document");
      Same("", result.getXmlDocument(), "a bare document");
    }
  }

  private static void ReportsFaults()
  {
    string text = File.ReadAllText(Sample("quality-control"));
    File.WriteAllText(Scratch("fault.zol"), text.Replace("Preamble", "Surprise"));
    Throws<ZolException>(null, () => Zol.Open(Scratch("fault.zol")));
    try { Zol.Open(Scratch("absent.zol")).Dispose(); Fail("opened nothing"); }
    catch (ZolException exception)
    {
      Same(ErrorCode.NoFile, exception.Code, "code of no file");
      Same(0, exception.Line, "line of no file");
    }
    using (Zol document = new Zol())
    {
      FileReport report = document.openFile(Scratch("fault.zol"));
      Same(elmx_error.elmx_mandatory_element_missing, report.Code, "code");
      Same(true, report.Line > 0, "line");
      Same("Zol:Preamble", report.Item, "item");
      Same(true, report.Message.Contains("Mandatory element missing"), "message");
      Same(elmx_error.elmx_occurs_on_marshal, document.saveFile(Scratch("bare.zol")).Code, "bare");
    }
  }

  private static void SurvivesWhatTheNativeFunctionsThrow()
  {
    File.WriteAllText(Scratch("no-archive.zolz"), "this is no archive");
    using (Zol document = Zol.Open(Sample("named-colours")))
    {
      Same(elmx_error.elmx_user_defined_1, document.loadFile(Scratch("no-archive.zolz")), "load");
      Same(elmx_error.elmx_user_defined_1, document.writeFile(Scratch("absent/x.zolz")), "write");
      Same(elmx_error.elmx_user_defined_2, document.writeFile("x.xml"), "suffix");
    }
    Throws<ArgumentOutOfRangeException>(null, () => lmx.stringncompare("ab", "b", 3, 1));
    Same(0, lmx.stringncompare("xab", "ab", 1, 2), "stringncompare");
  }

  private static readonly string[] texts = {
    "", "plain", "\u00E9\u20AC\uFFFD", "\U00010000\U0001F308\U0010FFFF", "\u65E5\u672C \U0002000B",
    new string('x', 70000) };

  private static void CarriesTextBothWays()
  {
    using (Zol document = Zol.Open(Sample("named-colours")))
    {
      Header header = document.get_Preamble().get_Header();
      foreach (string text in texts)
      {
        Same(elmx_error.elmx_ok, header.set_Name(text), "set_Name");
        Same(text, header.get_Name(), "get_Name");
        // Through a file, where it is UTF-8. An empty element reads as an empty text.
        document.Save(Scratch("\u65E5\u672C \U0001F308.zolz"));
        using (Zol again = Zol.Open(Scratch("\u65E5\u672C \U0001F308.zolz")))
        {
          Same(text, again.get_Preamble().get_Header().get_Name(), "in a file");
        }
      }
      // A surrogate on its own is a text of this side too.
      header.set_Name("a\uD800");
      Same("a\uD800", header.get_Name(), "lone surrogate");
      Same(elmx_error.elmx_ok, header.set_Name(null), "null");
      Same("", header.get_Name(), "null");
    }
  }

  private static void CarriesNarrowTextBothWays()
  {
    foreach (string text in texts)
    {
      using (c_any_info any = new c_any_info(text, "name", text))
      {
        Same(text, any.get_namespace(), "get_namespace");
        any.set_name(text);
        Same(text, any.get_name(), "get_name");
      }
      Same(text, lmx.convert_to_narrow(text), "convert_to_narrow");
      Same(text, lmx.convert_to_wide(text), "convert_to_wide");
    }
    Same("Element not found", lmx.get_error_description(elmx_error.elmx_element_not_found), "text");
  }

  private static void RaisesForNull()
  {
    Throws<ArgumentNullException>("zol_v2::Header const & type is null",
                                  () => new Header((Header)null));
    using (Zol document = new Zol())
    {
      Preamble preamble = document.get_Preamble();
      Throws<ArgumentNullException>("zol_v2::Header const & type is null",
                                    () => preamble.assign_Header(null));
      Throws<ArgumentNullException>("zol_v2::Preamble & type is null", () => preamble.swap(null));
      Throws<ArgumentNullException>("lmx::tc_datetime const & type is null",
                                    () => preamble.get_Header().append_ChangeHistory(null));
      // Nothing is left pending.
      Same(elmx_error.elmx_ok, preamble.assign_Header(preamble.get_Header()), "assign");
    }
    Throws<ArgumentNullException>("null string", () => new c_any_info("a", null, "c"));
    Throws<ArgumentNullException>("null string", () => lmx.length(null));
    Throws<ArgumentNullException>("null string", () => ColorSpaceType.factory(1000, null));
  }

  private static void RefusesIndicesPastTheEnd()
  {
    using (Header header = new Header())
    {
      Throws<ArgumentOutOfRangeException>(null, () => header.get_ChangeHistory(0));
      Throws<ArgumentOutOfRangeException>(null, () => header.back_CustomAttribute());
      Throws<ArgumentOutOfRangeException>(null, () => header.delete_CustomAttribute(0));
      Throws<ArgumentOutOfRangeException>(null, () => header.delete_ChangeHistory(7));
      Throws<ArgumentOutOfRangeException>(null, () => header.get_CustomAttribute(uint.MaxValue));
      Throws<ArgumentOutOfRangeException>(null, () => header.insert_CustomAttribute(1));
      Same(0u, header.size_CustomAttribute(), "size");
      header.insert_CustomAttribute(0);
      Throws<ArgumentOutOfRangeException>(
        null, () => header.assign_CustomAttribute(1, header.get_CustomAttribute(0)));
      Same(1u, header.size_CustomAttribute(), "size");
    }
    using (Version version = new Version())
    {
      Throws<ArgumentOutOfRangeException>(null, () => version.get_Predecessor(0));
      Same(elmx_error.elmx_ok, version.append_Predecessor("\U0001F308"), "append");
      Same("\U0001F308", version.get_Predecessor(0), "get");
    }
  }

  private static void KnowsValueClasses()
  {
    using (c_binary binary = new c_binary(new byte[] { 1, 2, 3 }))
    {
      binary.append(4);
      Same(4u, binary.size(), "size");
      Same(true, binary.equal(new byte[] { 1, 2, 3, 4 }), "equal");
      binary.set(null);
      Same(0u, binary.size(), "size of nothing");
    }
    using (c_decimal value = new c_decimal(1234, 2))
    {
      Same("12.34", value.get_as_string(), "decimal");
    }
    using (c_big_int value = new c_big_int("007")) Same(7, value.get(), "integer");
    using (c_duration value = new c_duration("P1Y2M")) Same(2u, value.get_months(), "duration");
    using (c_datetime value = new c_datetime("2024-02-29T12:30:15.5+01:00"))
    {
      Same(15.5f, value.get_secs(), "seconds");
      Same(60, value.get_total_offset_mins(), "offset");
    }
    using (c_pattern value = new c_pattern("[a-c]+")) Same(true, value.is_match("abc"), "pattern");
    Same(1, lmx.LMX_XML_STRICT, "a constant");
    elmx_error code;
    using (new ColorSpaceCMYKPlusN(Scratch("absent.zol"), out code))
    {
      Same(elmx_error.elmx_no_file, code, "constructor from a file");
    }
  }

  private static void ChoosesAndNumbersAlternatives()
  {
    using (sg_ColorSpace space = new sg_ColorSpace())
    {
      Same(null, space.get_ColorSpaceRGB(), "an alternative that is not chosen");
      Same(sg_ColorSpace.elmx_chosen.chosen_none, space.getchosen(), "nothing");
      Same(29, (int)space.getchosen(), "the number of nothing");
      space.make_ColorSpaceRGB();
      Same(sg_ColorSpace.elmx_chosen.chosen_ColorSpaceRGB, space.getchosen(), "RGB");
    }
    using (CalibrationStateType state = new CalibrationStateType())
    {
      Same(true, state.setenum_CalibrationStateType(
        (CalibrationStateType.Eenum_CalibrationStateType)2), "setenum");
      Same("CalibrationState_Calibrated", state.get_CalibrationStateType(), "text");
      Same("CalibrationStateType_CalibrationState_Calibrated",
           state.getenum_CalibrationStateType().ToString(), "getenum");
      Same(elmx_error.elmx_value_not_enumerated, state.set_CalibrationStateType("x"), "code");
    }
  }

  private static void BuildsDerivedProxies()
  {
    using (ColorSpaceType made = ColorSpaceType.factory(1000, "ColorSpaceRGBType"))
    using (ColorSpaceRGBType rgb = new ColorSpaceRGBType())
    {
      Same(ColorSpaceRGBType.id_get(), made.getid(), "identity");
      Same(true, made.has_id(ColorSpaceType.id_get()), "identity of the base");
      Same(elmx_error.elmx_ok, rgb.set_Red(0.25), "own row");
      using (c_datetime moment = new c_datetime("2026-01-02T03:04:05Z"))
      {
        Same(elmx_error.elmx_ok, rgb.append_ChangeHistory(moment), "row of the base");
      }
      using (ColorSpaceRGBType copy = rgb.clone())
      {
        Same(0.25, copy.get_Red(), "clone");
        Same(1u, copy.size_ChangeHistory(), "clone of the base");
      }
    }
    Same<ColorSpaceType>(null, ColorSpaceType.factory(1000, "NoSuchType"), "unknown type");
  }

  [MethodImpl(MethodImplOptions.NoInlining)]
  private static ColorType ColourOfLostDocument()
  {
    Zol document = new Zol();
    ColorType color = document.append_Color();
    color.set_ColorName("still here");
    return color;
  }

  private static void Collect()
  {
    for (int i = 0; i < 3; ++i)
    {
      GC.Collect();
      GC.WaitForPendingFinalizers();
    }
  }

  private static void KeepsParentsAlive()
  {
    ColorType color = ColourOfLostDocument();
    Same(null, color.get_Owner(), "an owner that nobody set");
    Same(false, color.isset_Owner(), "reading");
    OwnerType owner = color.make_Owner();
    Collect();
    for (int i = 0; i < 1000; ++i) new Zol().append_Color().set_ColorName("elsewhere");
    Collect();
    Same("still here", color.get_ColorName(), "after collection");
    Same(true, color.isset_Owner(), "after collection");
    GC.KeepAlive(owner);
  }

  private static void RefusesDisposedProxies()
  {
    Zol document = new Zol();
    ColorType color = document.append_Color();
    color.Dispose();  // borrowed: the object stays
    Throws<ObjectDisposedException>("ColorType", () => color.get_ColorName());
    Same(1u, document.size_Color(), "what a borrowed proxy leaves");
    ColorType other = document.get_Color(0);
    document.Dispose();
    document.Dispose();
    Throws<ObjectDisposedException>("Zol", () => document.size_Color());
    Throws<ObjectDisposedException>("Zol", () => other.get_ColorName());
    Throws<ObjectDisposedException>("Zol", () => new Zol(document));
  }

  // Pages in memory, from the system: what the native side holds is not the collector's to count.
  private static long ResidentKilobytes()
  {
    string line = File.ReadAllLines("/proc/self/status").First(l => l.StartsWith("VmRSS"));
    return long.Parse(new string(line.Where(char.IsDigit).ToArray()));
  }

  private static long Growth(Action work)
  {
    work();
    Collect();
    long before = ResidentKilobytes();
    work();
    Collect();
    return ResidentKilobytes() - before;
  }

  private static void FinalizesWhatWasNotDisposed()
  {
    // Each document holds about a megabyte.
    string large = new string('x', 250000);
    long growth = Growth(() =>
    {
      for (int i = 0; i < 200; ++i)
      {
        new Zol().append_Color().set_ColorName(large);
        if (i % 20 == 19) Collect();
      }
    });
    if (growth > 40000) Fail(growth + " KiB stay after 200 lost documents of a megabyte");
  }

  private static void CollectsLostDocuments()
  {
    // Each takes some megabytes from the heap of which the collector sees nothing.
    string sample = Sample("named-colours");
    long growth = Growth(() => { for (int i = 0; i < 150; ++i) Zol.Open(sample); });
    if (growth > 150000) Fail(growth + " KiB stay after 150 lost documents");
  }

  private sealed class Report
  {
    internal static string Last;
    private readonly Zol document = new Zol();

    internal Report() { document.append_Color().set_ColorName("the last of its kind"); }
    ~Report()
    {
      try { Last = document.get_Color(0).get_ColorName(); }
      catch (ObjectDisposedException) { Last = "ended too early"; }
    }
  }

  [MethodImpl(MethodImplOptions.NoInlining)]
  private static void LoseReports()
  {
    for (int i = 0; i < 1000; ++i) new Report();
  }

  private static void LetsFinalizersUseTheirDocuments()
  {
    LoseReports();
    Collect();
    Same("the last of its kind", Report.Last, "what the last finalizer read");
  }

  private static IEnumerable<sg_ColorSpace> Spaces(Zol document)
  {
    for (uint i = 0; i < document.size_Color(); ++i)
    {
      ColorType color = document.get_Color(i);
      for (uint j = 0; j < color.size_ColorSpace(); ++j) yield return color.get_ColorSpace(j);
    }
  }

  private static void KnowsTheTypeOfWhatItFinds()
  {
    using (Zol document = Zol.Open(Sample("quality-control")))
    {
      FunctionType function = document.get_ColorQualityControl(0).get_Tolerance(1).get_Function()
                                      .get_Function();
      var tolerance = function as FunctionTolerance;
      Same(true, tolerance != null && tolerance.size_Parameters() > 0, "rows of the derived type");
      Same("FunctionTolerance", function.clone().GetType().Name, "a clone");
    }
    using (Zol document = Zol.Open(Sample("coverage-spaces")))
    {
      var extended = Spaces(document).Select(space => space.get_ColorSpaceCMYK())
                                     .OfType<ColorSpaceCMYKPlusNType>();
      Same(true, extended.Any(space => space.size_Color() > 0), "CMYK that is CMYK plus N");
    }
    using (ColorSpaceType made = ColorSpaceType.factory(1000, "ColorSpaceRGBType"))
    {
      Same(true, made is ColorSpaceRGBType, "what a factory made");
    }
  }

  private static void KeepsTheRowsOfDerivedTypes()
  {
    using (Zol document = Zol.Open(Sample("quality-control")))
    using (FunctionTolerance tolerance = new FunctionTolerance())
    {
      sg_Function holder = document.get_ColorQualityControl(0).get_Tolerance(1).get_Function();
      string before = holder.get_Function().GetType().Name;
      tolerance.set_ToleranceType("DE00");
      tolerance.append_Parameters().set_LowValue(0.5);
      Throws<ArgumentException>("adopt_Function keeps them",
                                () => holder.assign_Function(tolerance));
      Same(before, holder.get_Function().GetType().Name, "what was refused");
      Same(elmx_error.elmx_ok, holder.adopt_Function(tolerance), "adopt");
      Same(elmx_error.elmx_ok, holder.adopt_Function(holder.get_Function()), "adopt its own");
      document.Save(Scratch("adopted.zol"));
      using (Zol again = Zol.Open(Scratch("adopted.zol")))
      {
        var read = (FunctionTolerance)again.get_ColorQualityControl(0).get_Tolerance(1)
                                           .get_Function().get_Function();
        Same("DE00", read.get_ToleranceType(), "a row of the derived type");
        Same(0.5, read.get_Parameters(0).get_LowValue(), "another one");
      }
    }
  }

  // Calls every getter below an object.
  private static int Read(Proxy proxy)
  {
    int count = 1;
    foreach (MethodInfo method in proxy.GetType().GetMethods())
    {
      if (!method.Name.StartsWith("get_") || method.Name == "get_any") continue;
      ParameterInfo[] wanted = method.GetParameters();
      if (wanted.Length > 1 || wanted.Any(p => p.IsOut)) continue;
      object size = wanted.Length == 0 ? 1u : proxy.GetType()
        .GetMethod("size_" + method.Name.Substring("get_".Length)).Invoke(proxy, null);
      for (uint i = 0; i < (uint)size; ++i)
      {
        object[] arguments = wanted.Length == 0 ? null : new object[] { i };
        Proxy child = method.Invoke(proxy, arguments) as Proxy;
        if (child != null && !(child is c_datetime)) count += Read(child);
      }
    }
    return count;
  }

  private static void ReadingChangesNothing()
  {
    foreach (string sample in Samples().Where(s => new FileInfo(s).Length < 200000))
    {
      using (Zol document = Zol.Open(sample))
      {
        // What was saved says when; the next one says no less.
        document.Save(Scratch("before.zol"));
        if (Read(document) < 50) Fail("nothing was read of " + sample);
        document.Save(Scratch("after.zol"));
        Same(File.ReadAllText(Scratch("before.zol")), File.ReadAllText(Scratch("after.zol")), sample);
      }
    }
    using (ColorType color = new ColorType())
    {
      Same(null, color.get_Owner(), "an owner");
      Same(null, color.get_Substrate(), "a substrate");
      Throws<ArgumentOutOfRangeException>(null, () => color.get_TagValues(0));
    }
  }

  private static void GivesWholeValues()
  {
    byte[] bytes = Enumerable.Range(0, 1000).Select(i => (byte)i).ToArray();
    using (c_binary binary = new c_binary(bytes))
    using (ProfileFile file = new ProfileFile())
    {
      file.set_ProfileFile(binary);
      Same(true, file.get_ProfileFile().get_bytes().SequenceEqual(bytes), "bytes");
    }
    using (c_binary binary = new c_binary()) Same(0, binary.get_bytes().Length, "no bytes");

    using (Zol document = Zol.Open(Sample("coverage-frame")))
    {
      Revision revision = document.get_Preamble().get_Header().get_Revision(0);
      string name, uri;
      Same(true, revision.get_any(0, out name, out uri).Contains("All"), "text");
      Same("http://example.org/approval", uri, "namespace");
      Same("a:approval", name, "name");
      Throws<ArgumentOutOfRangeException>(
        null, () => revision.get_any(revision.size_any(), out name, out uri));
    }
    using (ColorType color = new ColorType())
    {
      string[] words = { "warm", "", "\U0001F308" };
      Same(0, color.all_SemanticAssociation().Length, "no texts");
      foreach (string word in words) color.append_SemanticAssociation(word);
      Same(true, words.SequenceEqual(color.all_SemanticAssociation()), "texts");

      var moment = new ZolDateTime(new DateTimeOffset(2026, 1, 2, 3, 4, 5, TimeSpan.FromHours(-5)));
      using (c_datetime date = new c_datetime(moment)) color.append_ChangeHistory(date);
      Same("2026-01-02T03:04:05-05:00", color.get_ChangeHistory(0).get_as_string(), "a date");
      Same(moment, color.all_ChangeHistory().Single(), "dates");
      Throws<ArgumentException>(
        null, () => new c_datetime(new ZolDateTime(2026, 1, 2, 3, 4, 5, 100 * 60)));
    }
    using (var spectrum = new ColorSpaceSpectralType())
    {
      double[] nm = Enumerable.Range(0, 36).Select(i => 380.0 + 10 * i).ToArray();
      double[] factors = nm.Select(w => w / 1000).ToArray(), left, right;
      Same(elmx_error.elmx_ok, spectrum.set_points(nm, factors), "points");
      spectrum.get_points(out left, out right);
      Same(true, left.SequenceEqual(nm) && right.SequenceEqual(factors), "points");
      Same(0.39, spectrum.get_ReflectancePoint(1).get_ReflectancePointType(), "one of them");
      Same(elmx_error.elmx_value_too_big,
           spectrum.set_points(new[] { 400.0, 410.0 }, new[] { 0.5, 10.0 }), "a wrong one");
      Same(36u, spectrum.size_ReflectancePoint(), "what was refused");
      Same(elmx_error.elmx_ok, spectrum.set_points(new[] { 400.0 }, new[] { 0.5 }), "fewer");
      Same(1u, spectrum.size_ReflectancePoint(), "fewer");
    }
  }

  private static void ShowsNoAddresses()
  {
    const BindingFlags All = BindingFlags.Public | BindingFlags.Instance | BindingFlags.Static;
    foreach (Type type in assembly.GetExportedTypes())
    {
      var shown = type.GetMethods(All).SelectMany(m => m.GetParameters().Select(p => p.ParameterType)
                                                        .Concat(new[] { m.ReturnType }))
        .Concat(type.GetConstructors(All).SelectMany(c => c.GetParameters())
                                         .Select(p => p.ParameterType))
        .Concat(type.GetFields(All).Select(f => f.FieldType));
      if (shown.Contains(typeof(IntPtr)) && !typeof(Delegate).IsAssignableFrom(type))
      {
        Fail(type + " shows an address");
      }
    }
    Same(new System.Version(2, 1, 0, 0), assembly.GetName().Version, "version");
    Same("Zol.Net", assembly.GetName().Name, "name");
  }

  private static void TextLeavesNoMemoryBehind()
  {
    using (Header header = new Header())
    {
      header.set_Name(new string('x', 1000));
      long growth = Growth(() =>
      {
        for (int i = 0; i < 100000; ++i) header.get_Name();
      });
      if (growth > 8000) Fail(growth + " KiB stay after 100,000 texts of 2 KB");
    }
  }
}

}
