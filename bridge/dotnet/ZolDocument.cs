#nullable enable
using System;
using System.Collections.Generic;
using System.IO;
using System.Runtime.InteropServices;
using System.Text;
using System.Text.RegularExpressions;
using System.Threading;
using System.Threading.Tasks;
using Zol.Interop;

namespace Zol;

/// <summary>How a document is written into a stream.</summary>
public enum ZolFormat
{
    /// <summary>XML in UTF-8, as in a .zol file.</summary>
    Xml = 0,

    /// <summary>An archive with the XML in it, as in a .zolz file.</summary>
    Archive = 1,
}

/// <remarks>
/// A document holds native memory, of which it tells the collector how much. Dispose of it, or leave
/// it to the collector.
/// </remarks>
public sealed partial class ZolDocument : IDisposable
{
    /// <summary>The document in a file.</summary>
    /// <param name="path">An archive if it ends in .zolz, else XML in any encoding.</param>
    /// <returns>A document that the caller disposes of.</returns>
    /// <exception cref="ZolException">
    /// The file cannot be read, or holds no document; <see cref="ZolException.Faults"/> has all that
    /// is wrong.
    /// </exception>
    public static ZolDocument Open(string path)
    {
        if (path is null) throw new ArgumentNullException(nameof(path));
        if (path.AsSpan().IndexOf('\0') >= 0) throw new ArgumentException("A path has no null.", nameof(path));
        IntPtr name = Marshal.StringToHGlobalUni(path);
        try
        {
            return Loaded(name, default);
        }
        finally
        {
            Marshal.FreeHGlobal(name);
        }
    }

    /// <summary>The document in a stream.</summary>
    /// <param name="stream">Read to its end: an archive, or XML in any encoding.</param>
    /// <returns>A document that the caller disposes of.</returns>
    /// <exception cref="ZolException">What it gives is no document.</exception>
    public static ZolDocument Open(Stream stream)
    {
        if (stream is null) throw new ArgumentNullException(nameof(stream));
        using var bytes = new MemoryStream();
        stream.CopyTo(bytes);
        return Loaded(IntPtr.Zero, new ReadOnlySpan<byte>(bytes.GetBuffer(), 0, (int)bytes.Length));
    }

    /// <summary>The document in a file, read by another thread.</summary>
    /// <param name="path">An archive if it ends in .zolz, else XML in any encoding.</param>
    /// <param name="cancellationToken">Looked at before the file is read.</param>
    /// <returns>A document that the caller disposes of.</returns>
    /// <exception cref="ZolException">The file cannot be read, or holds no document.</exception>
    public static Task<ZolDocument> OpenAsync(
        string path, CancellationToken cancellationToken = default) =>
        Task.Run(() => Open(path), cancellationToken);

    /// <summary>The document in a stream, read as it comes and taken apart by another thread.</summary>
    /// <param name="stream">Read to its end: an archive, or XML in any encoding.</param>
    /// <param name="cancellationToken">Ends the reading of the stream.</param>
    /// <returns>A document that the caller disposes of.</returns>
    /// <exception cref="ZolException">What it gives is no document.</exception>
    public static async Task<ZolDocument> OpenAsync(
        Stream stream, CancellationToken cancellationToken = default)
    {
        if (stream is null) throw new ArgumentNullException(nameof(stream));
        using var bytes = new MemoryStream();
        await stream.CopyToAsync(bytes, BufferSize, cancellationToken).ConfigureAwait(false);
        bytes.Position = 0;
        return await Task.Run(() => Open(bytes), cancellationToken).ConfigureAwait(false);
    }

    /// <summary>The document in a text.</summary>
    /// <param name="xml">XML; an encoding that it declares is of no account.</param>
    /// <returns>A document that the caller disposes of.</returns>
    /// <exception cref="ZolException">It is no document.</exception>
    public static ZolDocument Parse(string xml)
    {
        if (xml is null) throw new ArgumentNullException(nameof(xml));
        // Blanks, so that a fault keeps its place.
        Group declared = DeclaredEncoding.Match(xml).Groups[1];
        string text = !declared.Success
            ? xml : xml.Remove(declared.Index, declared.Length)
                       .Insert(declared.Index, new string(' ', declared.Length));
        return Loaded(IntPtr.Zero, Encoding.UTF8.GetBytes(text));
    }

    /// <summary>The document in the bytes of a file.</summary>
    /// <param name="bytes">An archive, or XML in any encoding.</param>
    /// <returns>A document that the caller disposes of.</returns>
    /// <exception cref="ZolException">They are no document.</exception>
    public static ZolDocument Parse(ReadOnlySpan<byte> bytes) => Loaded(IntPtr.Zero, bytes);

    /// <summary>Writes the document into a file.</summary>
    /// <param name="path">Ends in .zol for XML, in .zolz for an archive.</param>
    /// <remarks>The new file takes the place of an older one in one step, once it is complete.</remarks>
    /// <exception cref="ZolException">
    /// Something required is missing, or the file cannot be written; an older file is as it was.
    /// </exception>
    public void Save(string path)
    {
        if (path is null) throw new ArgumentNullException(nameof(path));
        if (path.AsSpan().IndexOf('\0') >= 0) throw new ArgumentException("A path has no null.", nameof(path));
        var report = new FileReport(Native.zol_save(new HandleRef(this, Live()), path));
        report.ThrowIfFailed();
    }

    /// <summary>Writes the document into a stream, which stays open.</summary>
    /// <param name="stream">Nothing is written to it unless the document is complete.</param>
    /// <param name="format">What is written.</param>
    /// <exception cref="ZolException">Something required is missing.</exception>
    public void Save(Stream stream, ZolFormat format = ZolFormat.Xml)
    {
        if (stream is null) throw new ArgumentNullException(nameof(stream));
        byte[] bytes = ToBytes(format);
        stream.Write(bytes, 0, bytes.Length);
    }

    /// <summary>Writes the document into a file by another thread.</summary>
    /// <param name="path">Ends in .zol for XML, in .zolz for an archive.</param>
    /// <param name="cancellationToken">Looked at before anything is written.</param>
    /// <returns>Ends when the file is there; until then the document is not to be touched.</returns>
    /// <exception cref="ZolException">The document or the file cannot be written.</exception>
    public Task SaveAsync(string path, CancellationToken cancellationToken = default) =>
        Task.Run(() => Save(path), cancellationToken);

    /// <summary>Writes the document into a stream, which stays open.</summary>
    /// <param name="stream">Nothing is written to it unless the document is complete.</param>
    /// <param name="format">What is written.</param>
    /// <param name="cancellationToken">Ends the writing.</param>
    /// <returns>Ends when all is written; until then the document is not to be touched.</returns>
    /// <exception cref="ZolException">Something required is missing.</exception>
    public async Task SaveAsync(Stream stream, ZolFormat format = ZolFormat.Xml,
                                CancellationToken cancellationToken = default)
    {
        if (stream is null) throw new ArgumentNullException(nameof(stream));
        byte[] bytes = await Task.Run(() => ToBytes(format), cancellationToken).ConfigureAwait(false);
#if NET
        await stream.WriteAsync(bytes, cancellationToken).ConfigureAwait(false);
#else
        await stream.WriteAsync(bytes, 0, bytes.Length, cancellationToken).ConfigureAwait(false);
#endif
    }

    /// <summary>The XML of the document.</summary>
    /// <returns>What <see cref="Save(string)"/> would write.</returns>
    /// <exception cref="ZolException">Something required is missing.</exception>
    public string ToXml() => Encoding.UTF8.GetString(ToBytes(ZolFormat.Xml));

    /// <summary>Judges the document: whether it can be saved, and would come back as it is.</summary>
    /// <returns>
    /// First what keeps it from being saved, then what would not come back, then warnings of what is
    /// lawful and seldom meant. Empty if all is well.
    /// </returns>
    public IReadOnlyList<ZolFault> Check() =>
        (IReadOnlyList<ZolFault>)new FileReport(Native.zol_check(new HandleRef(this, Live()))).Faults;

    /// <summary>Ends the document: whatever was in it is no more.</summary>
    public void Dispose() => Lifetime.Dispose();

    private const int BufferSize = 81920;

    private static readonly Regex DeclaredEncoding = new(
        "^\uFEFF?<\\?xml\\s[^>?]*?(\\sencoding\\s*=\\s*(?:\"[^\"]*\"|'[^']*'))",
        RegexOptions.CultureInvariant);

    private static unsafe ZolDocument Loaded(IntPtr path, ReadOnlySpan<byte> bytes)
    {
        var document = new ZolDocument();
        fixed (byte* first = bytes)
        {
            var report = new FileReport(
                Rows.zol_open(document.Live(), path, first, (ulong)bytes.Length));
            if (report.Code == elmx_error.elmx_ok)
            {
                document.Lifetime.Measure();
                return document;
            }
            document.Dispose();
            throw new ZolException(report);
        }
    }

    private byte[] ToBytes(ZolFormat format)
    {
        if (format == ZolFormat.Archive) return ToArchive();
        byte[] bytes = [];
        var report = new FileReport(
            Native.zol_save(new HandleRef(this, Live()), null),
            outcome =>
            {
                bytes = new byte[checked((int)outcome.Size)];
                Marshal.Copy(outcome.Bytes, bytes, 0, bytes.Length);
            });
        report.ThrowIfFailed();
        return bytes;
    }

    // An archive is written with seeking back and forth, which a stream need not know.
    private byte[] ToArchive()
    {
        string directory = System.IO.Path.Combine(
            System.IO.Path.GetTempPath(), System.IO.Path.GetRandomFileName());
        _ = Directory.CreateDirectory(directory);
        try
        {
            string path = System.IO.Path.Combine(directory, "document.zolz");
            Save(path);
            return File.ReadAllBytes(path);
        }
        finally
        {
            Directory.Delete(directory, true);
        }
    }
}

/// <summary>What can be done with objects of every class.</summary>
public static class ZolObjectExtensions
{
    /// <summary>A copy of its own, with all that is in it.</summary>
    /// <typeparam name="T">The class of the object.</typeparam>
    /// <param name="source">The object, in a document or not.</param>
    /// <returns>An object that is in no document.</returns>
    public static T Copy<T>(this T source) where T : ZolObject
    {
        if (source is null) throw new ArgumentNullException(nameof(source));
        IntPtr copy = Rows.Given(Rows.zol_copy(source.Live()));
        GC.KeepAlive(source);
        var owner = new NativeOwner(copy, null);
        owner.Measure();
        return (T)Classes.Wrap(Rows.zol_type_of(copy), new Link(copy, owner, null, 0));
    }
}

/// <content>The points of the spectrum at once.</content>
public sealed partial class Spectral
{
    /// <summary>All points, as numbers: setting them replaces them all, or changes nothing.</summary>
    /// <exception cref="ZolException">A number cannot stand there.</exception>
    public Spectrum Spectrum
    {
        get => Spectrum.Read(this);
        set => Spectrum.Write(this, PointsRow, value);
    }
}

/// <content>The points of the spectrum at once.</content>
public sealed partial class EmissiveSpectral
{
    /// <summary>All points, as numbers: setting them replaces them all, or changes nothing.</summary>
    /// <exception cref="ZolException">A number cannot stand there.</exception>
    public Spectrum Spectrum
    {
        get => Spectrum.Read(this);
        set => Spectrum.Write(this, PointsRow, value);
    }
}
