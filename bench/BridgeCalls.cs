// What a call costs a C# client: a million of each, the best of five rounds.
//
//     LD_LIBRARY_PATH=.. mono BridgeCalls.exe

using System;
using System.Diagnostics;

namespace Bench
{

using Zol.Interop;

internal static class BridgeCalls
{
  private const int Calls = 1000000;
  private const int Rounds = 5;

  private static void Measure(string name, Action million)
  {
    double best = double.MaxValue;
    for (int round = 0; round < Rounds; ++round)
    {
      Stopwatch watch = Stopwatch.StartNew();
      million();
      best = Math.Min(best, watch.Elapsed.TotalMilliseconds);
    }
    Console.WriteLine("{0,-24}{1,8:F1} ns a call", name, best * 1e6 / Calls);
  }

  private static void Main()
  {
    using (ColorSpaceRGBType rgb = new ColorSpaceRGBType())
    using (Averaging averaging = new Averaging())
    using (Header header = new Header())
    using (Zol document = new Zol())
    {
      rgb.set_Red(0.5);
      header.set_Name("A name of thirty characters ...");
      for (int i = 0; i < 100; ++i) document.append_Color();
      double sum = 0;
      Measure("an empty loop", () => { for (int i = 0; i < Calls; ++i) sum += i; });
      Measure("get a double", () => { for (int i = 0; i < Calls; ++i) sum += rgb.get_Red(); });
      Measure("set a double", () => { for (int i = 0; i < Calls; ++i) rgb.set_Red(0.25); });
      Measure("get a bool", () =>
      {
        for (int i = 0; i < Calls; ++i) sum += averaging.get_Averaging() ? 1 : 0;
      });
      Measure("get a child", () => { for (int i = 0; i < Calls; ++i) document.get_Color(50); });
      Measure("get a text", () =>
      {
        for (int i = 0; i < Calls; ++i) sum += header.get_Name().Length;
      });
      Measure("set a text", () => { for (int i = 0; i < Calls; ++i) header.set_Name("name"); });
      if (double.IsNaN(sum)) Console.WriteLine(sum);
    }
  }
}

}
