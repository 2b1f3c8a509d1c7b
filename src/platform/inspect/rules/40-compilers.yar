import "pe"
import "dotnet"
import "console"

rule visual_basic_6 {
  meta:
    type = "Compiler"
    name = "Microsoft Visual Basic"
    version = "6.0"
  condition:
    pe.is_pe and pe.imports("MSVBVM60.DLL") > 0
}

rule visual_basic_5 {
  meta:
    type = "Compiler"
    name = "Microsoft Visual Basic"
    version = "5.0"
  condition:
    pe.is_pe and pe.imports("MSVBVM50.DLL") > 0
}

rule go {
  meta:
    type = "Compiler"
    name = "Go"
  strings:
    $version = /go1\.[0-9]{1,2}(\.[0-9]{1,2})?/
    $info = { FF 20 47 6F 20 62 75 69 6C 64 69 6E 66 3A }
    $id = "Go build ID: \""
  condition:
    pe.is_pe and ($info or $id) and #version >= 0
}

rule rust {
  meta:
    type = "Compiler"
    name = "Rust"
  strings:
    $source = /\/rustc\/[0-9a-f]{40}\//
  condition:
    pe.is_pe and $source
}

rule delphi {
  meta:
    type = "Compiler"
    name = "Delphi"
  strings:
    $borland = "SOFTWARE\\Borland\\Delphi" nocase
    $later = "Software\\Embarcadero\\Locales" wide nocase
    $between = "Software\\CodeGear\\Locales" wide nocase
  condition:
    pe.is_pe and any of them
}

rule mingw {
  meta:
    type = "Compiler"
    name = "MinGW"
  strings:
    $runtime = "Mingw-w64 runtime failure:"
    $version = /GCC: \([A-Za-z][^()]{0,39}\) [0-9]{1,2}(\.[0-9]{1,2}){0,2}/
    $old = "Mingw runtime failure:"
  condition:
    pe.is_pe and any of them
}

rule visual_cpp {
  meta:
    type = "Compiler"
    name = "Microsoft Visual C/C++"
  condition:
    pe.is_pe and pe.rich_signature.length > 0 and not dotnet.is_dotnet and not visual_basic_6 and not visual_basic_5 and
    console.log("visual_cpp=", pe.linker_version.major)
}
