// Tests of the managed classes, as one program without a framework.
//
//     mono ManagedTests.exe RESAVE DOCUMENTS
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
using ZolModule;
using Process = System.Diagnostics.Process;
using Version = ZolModule.Version;

internal static class ManagedTests
{
  private static string resave, documents, scratch;
  private static int failures;

  private static int Main(string[] arguments)
  {
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
    Run(TextLeavesNoMemoryBehind);
    Directory.Delete(scratch, true);
    Console.WriteLine(failures == 0 ? "all passed" : failures + " failed");
    return failures == 0 ? 0 : 1;
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
    const int Helpers = 6;  // zol_..., beside the exports
    int found = 0;
    Type native = assembly.GetType("ZolModule.Native");
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
          // Addresses come from native code, and id_set would outlive the test.
          if (method.GetParameters().Any(p => p.ParameterType == typeof(IntPtr))) continue;
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
      Same(elmx_error.elmx_no_file, exception.Report.Code, "code of no file");
      Same(exception.Message, exception.Report.Message, "message of no file");
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
      header.delete_CustomAttribute(7);
      Same("", header.get_CustomAttribute(2).get_Name(), "an element that grew");
      Same(3u, header.size_CustomAttribute(), "size");
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
      Same(sg_ColorSpace.elmx_chosen.chosen_none, space.getchosen(), "nothing");
      Same(29, (int)space.getchosen(), "the number of nothing");
      space.get_ColorSpaceRGB();
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
    OwnerType owner = color.get_Owner();
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
