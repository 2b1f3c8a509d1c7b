import "pe"
import "dotnet"
import "console"

rule dotnet_framework {
  meta:
    type = "Library"
    name = ".NET Framework"
  strings:
    $version = /\.NETFramework,Version=v[0-9]\.[0-9](\.[0-9])?/
  condition:
    dotnet.is_dotnet and $version
}

// Its runtimes are none of the ones that a .NET Framework program needs.
rule dotnet_core {
  meta:
    type = "Loader"
    name = ".NET Core"
  strings:
    $version = /\.NETCoreApp,Version=v[0-9]{1,2}\.[0-9]/
  condition:
    dotnet.is_dotnet and $version
}

rule dotnet_runtime {
  meta:
    type = "Library"
    name = ".NET"
  condition:
    dotnet.is_dotnet and not dotnet_framework and not dotnet_core and console.log("dotnet_runtime=", dotnet.version)
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
    pe.is_pe and not dotnet.is_dotnet and (($library and $root) or $bundle)
}
