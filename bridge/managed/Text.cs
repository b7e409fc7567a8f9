using System;
using System.Runtime.InteropServices;
using System.Text;

namespace Zol.Interop
{
  /// <summary>Text on its way across the boundary.</summary>
  internal static class Text
  {
    /// <summary>UTF-16 that a function gave, freed at once.</summary>
    internal static string Take(IntPtr given)
    {
      if (given == IntPtr.Zero) throw new OutOfMemoryException();
      try { return Marshal.PtrToStringBSTR(given); }
      finally { Native.zol_text_free(given); }
    }

    /// <summary>UTF-8 that a function gave, freed at once.</summary>
    internal static string TakeNarrow(IntPtr given)
    {
      if (given == IntPtr.Zero) throw new OutOfMemoryException();
      try { return Decoded(given, checked((int)Native.zol_text_bytes(given))); }
      finally { Native.zol_text_free(given); }
    }

    /// <summary>UTF-8 texts that a function gave in one block, each with its terminator.</summary>
    internal static string[] TakeAll(IntPtr given)
    {
      string all = TakeNarrow(given);
      return all.Length == 0 ? Array.Empty<string>() : all.Substring(0, all.Length - 1).Split('\0');
    }

    /// <summary>UTF-8 with its terminator; null stays null, for the function to refuse.</summary>
    internal static byte[] Narrow(string text)
    {
      if (text == null) return null;
      byte[] bytes = new byte[Encoding.UTF8.GetByteCount(text) + 1];
      Encoding.UTF8.GetBytes(text, 0, text.Length, bytes, 0);
      return bytes;
    }

    /// <summary>UTF-8 that stays where it is.</summary>
    internal static string Read(IntPtr borrowed)
    {
      if (borrowed == IntPtr.Zero) return null;
      int size = 0;
      while (Marshal.ReadByte(borrowed, size) != 0) ++size;
      return Decoded(borrowed, size);
    }

    internal static uint Size(byte[] bytes) { return bytes == null ? 0 : (uint)bytes.Length; }

    /// <summary>Refuses a place past the end, for which the function would throw.</summary>
    internal static void Position(string text, uint pos)
    {
      if (text != null && pos > Encoding.UTF8.GetByteCount(text))
      {
        throw new ArgumentOutOfRangeException(nameof(pos));
      }
    }

    private static string Decoded(IntPtr address, int size)
    {
      byte[] bytes = new byte[size];
      Marshal.Copy(address, bytes, 0, size);
      return Encoding.UTF8.GetString(bytes);
    }
  }
}
