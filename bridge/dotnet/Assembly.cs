using System.Runtime.InteropServices;

[assembly: ComVisible(false)]
[assembly: System.CLSCompliant(false)]

// The native library is beside the assembly, or where the system or the host looks.
[assembly: DefaultDllImportSearchPaths(
    DllImportSearchPath.AssemblyDirectory | DllImportSearchPath.SafeDirectories)]
