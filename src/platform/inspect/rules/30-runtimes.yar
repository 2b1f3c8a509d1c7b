import "pe"
import "dotnet"
import "console"

// An attribute says what the program was made for: 01 00, the length of the text and the text.
rule dotnet_framework {
  meta:
    type = "Library"
    name = ".NET Framework"
  strings:
    $version = /\x01\x00[\x18-\x40]\.NETFramework,Version=v[0-9]\.[0-9](\.[0-9])?/
  condition:
    dotnet.is_dotnet and $version
}

// Its runtimes are none of the ones that a .NET Framework program needs.
rule dotnet_core {
  meta:
    type = "Loader"
    name = ".NET Core"
  strings:
    $version = /\x01\x00[\x18-\x40]\.NETCoreApp,Version=v[0-9]{1,2}\.[0-9]/
  condition:
    dotnet.is_dotnet and $version
}

// Before 4.0 there was no such attribute, and 3.0 and 3.5 run on the runtime of 2.0: the libraries tell.
rule dotnet_framework_35 {
  meta:
    type = "Library"
    name = ".NET Framework"
    version = "3.5"
  condition:
    dotnet.is_dotnet and not dotnet_framework and not dotnet_core and dotnet.version startswith "v2" and
    for any reference in dotnet.assembly_refs : (reference.version.major == 3 and reference.version.minor == 5 and
      reference.name startswith "System")
}

rule dotnet_framework_30 {
  meta:
    type = "Library"
    name = ".NET Framework"
    version = "3.0"
  condition:
    dotnet.is_dotnet and not dotnet_framework and not dotnet_core and not dotnet_framework_35 and
    dotnet.version startswith "v2" and
    for any reference in dotnet.assembly_refs : (reference.version.major == 3 and reference.version.minor == 0 and
      (reference.name startswith "System" or reference.name startswith "Presentation" or reference.name == "WindowsBase"))
}

rule dotnet_runtime {
  meta:
    type = "Library"
    name = ".NET"
  condition:
    dotnet.is_dotnet and not dotnet_framework and not dotnet_core and not dotnet_framework_35 and
    not dotnet_framework_30 and console.log("dotnet_runtime=", dotnet.version)
}

rule dotnet_reactor {
  meta:
    type = "Protector"
    name = ".NET Reactor"
  condition:
    dotnet_reactor_marks and not dotnet_reactor_version
}

// The number stands in every host; in front of it is where the files are that a single-file program holds, or 0.
rule dotnet_bundle {
  meta:
    type = "Loader"
    name = ".NET Core host"
    info = "single file"
  strings:
    $bundle = { 8B 12 02 B9 6A 61 20 38 72 7B 93 02 14 D7 A0 32 13 F5 B9 E6 EF AE 33 18 EE 3B 2D CE 24 B3 6A AE }
  condition:
    pe.is_pe and not dotnet.is_dotnet and $bundle and
    (uint32(@bundle - 8) != 0 or uint32(@bundle - 4) != 0)
}

rule dotnet_host {
  meta:
    type = "Loader"
    name = ".NET Core host"
  strings:
    $library = "hostfxr" wide
    $root = "DOTNET_ROOT" wide
    $bundle = { 8B 12 02 B9 6A 61 20 38 72 7B 93 02 14 D7 A0 32 13 F5 B9 E6 EF AE 33 18 EE 3B 2D CE 24 B3 6A AE }
  condition:
    pe.is_pe and not dotnet.is_dotnet and not dotnet_bundle and (($library and $root) or $bundle)
}
