// A tour of the library from C#: each document on the command line is opened, described, given one
// more colour and saved as an archive in the directory that comes first.
//
//     mono Tour.exe DIRECTORY DOCUMENT...

using System;
using System.IO;

namespace ColourTour
{

// Inside of the namespace, where the class Zol comes before the namespace Zol.
using Zol.Interop;
using ZolException = global::Zol.ZolException;

internal static class Tour
{
  private const uint Shown = 3;
  private const string Moment = "2026-01-02T03:04:05Z";

  private static int Main(string[] arguments)
  {
    if (arguments.Length < 2)
    {
      Console.Error.WriteLine("usage: Tour.exe DIRECTORY DOCUMENT...");
      return 2;
    }
    int failures = 0;
    for (int i = 1; i < arguments.Length; ++i)
    {
      string name = Path.GetFileNameWithoutExtension(arguments[i]);
      try { Show(arguments[i], Path.Combine(arguments[0], name + ".zolz")); }
      catch (ZolException exception)
      {
        ++failures;
        Console.Error.WriteLine("{0}: line {1}, {2}: {3} ({4})", arguments[i], exception.Line,
                                exception.Item ?? "document", exception.Message, exception.Code);
      }
    }
    return failures == 0 ? 0 : 1;
  }

  private static void Show(string source, string target)
  {
    using (Zol document = Zol.Open(source))
    {
      Console.WriteLine(source);
      Describe(document);
      AddMeasurement(document);
      document.Save(target);
      using (Zol again = Zol.Open(target))
      {
        Console.WriteLine("  saved {0}, read {1} colours back", Path.GetFileName(target),
                          again.size_Color());
      }
    }
  }

  private static void Describe(Zol document)
  {
    Header header = document.get_Preamble().get_Header();
    Console.WriteLine("  by {0} {1}, first change {2}", header.get_Creator(),
                      header.get_CreatorVersion(), header.get_ChangeHistory(0).get_as_string());
    for (uint i = 0; i < document.size_Palette(); ++i)
    {
      PaletteType palette = document.get_Palette(i);
      Console.WriteLine("  palette {0}", palette.get_PaletteName());
      for (uint j = 0; j < palette.size_ColorSet(); ++j)
      {
        ColorSetType set = palette.get_ColorSet(j);
        Console.WriteLine("    set {0}, {1} colours", set.get_ColorSetName(), set.size_Color());
        for (uint k = 0; k < Math.Min(Shown, set.size_Color()); ++k) Describe(set.get_Color(k));
      }
    }
    Console.WriteLine("  {0} colours of their own", document.size_Color());
    for (uint i = 0; i < Math.Min(Shown, document.size_Color()); ++i)
    {
      Describe(document.get_Color(i));
    }
  }

  private static void Describe(ColorType color)
  {
    Console.Write("      {0}", color.get_ColorName());
    for (uint i = 0; i < color.size_ColorSpace(); ++i)
    {
      sg_ColorSpace space = color.get_ColorSpace(i);
      switch (space.getchosen())
      {
        case sg_ColorSpace.elmx_chosen.chosen_ColorSpaceCIELab:
          ColorSpaceCIELabType lab = space.get_ColorSpaceCIELab();
          Console.Write("  Lab {0:F2} {1:F2} {2:F2}", lab.get_L(), lab.get_A(), lab.get_B());
          break;
        case sg_ColorSpace.elmx_chosen.chosen_ColorSpaceSpectral:
          ColorSpaceSpectralType spectrum = space.get_ColorSpaceSpectral();
          double[] wavelengths, values;
          spectrum.get_points(out wavelengths, out values);
          Console.Write("  {0} points from {1} to {2} nm", values.Length, wavelengths[0],
                        wavelengths[wavelengths.Length - 1]);
          break;
        default:
          Console.Write("  {0}", space.getchosen().ToString().Replace("chosen_ColorSpace", ""));
          break;
      }
    }
    Console.WriteLine();
  }

  private static void AddMeasurement(Zol document)
  {
    ColorType color = document.append_Color();
    Expect(color.set_ColorName("Added on tour \U0001F308"));
    using (c_datetime now = new c_datetime(Moment))
    {
      Expect(color.append_ChangeHistory(now));
      ColorSpaceCIELabType lab = color.append_ColorSpace().make_ColorSpaceCIELab();
      // What a colour space has as a ColorSpaceType comes with its base class.
      Expect(lab.append_ChangeHistory(now));
      lab.get_ColorSpaceSpecificationSpectrumTristimulus()
         .setnil_ColorSpaceSpecificationSpectrumTristimulus();
      Expect(lab.set_L(53.2));
      Expect(lab.set_A(80.1));
      Expect(lab.set_B(67.2));
    }
  }

  private static void Expect(elmx_error code)
  {
    if (code != elmx_error.elmx_ok) throw new InvalidOperationException(code.ToString());
  }
}

}
