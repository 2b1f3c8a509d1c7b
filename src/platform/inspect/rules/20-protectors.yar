import "pe"
import "dotnet"

private rule dotnet_reactor_marks {
  strings:
    $key = /\{11111-22222-[1-5]00[0-9]{2}-[01]{4}[0-2]\}/ wide
    $trial = /protected by an unregistered version of [A-Za-z' "]{1,20}\.NET Reactor/ wide ascii
  condition:
    dotnet.is_dotnet and any of them
}

// Its version decides on the runtime. Where it cannot be told, the rule dotnet_reactor stands behind those that know more.
rule dotnet_reactor_version {
  meta:
    type = "Protector"
    name = ".NET Reactor"
  strings:
    $version = /\.NET Reactor[ v]{1,2}[0-9]{1,2}(\.[0-9]{1,2}){0,3}/ wide ascii
  condition:
    dotnet_reactor_marks and $version
}

rule upx {
  meta:
    type = "Packer"
    name = "UPX"
  strings:
    $version = /\$Id: UPX [0-9]{1,2}\.[0-9]{1,3}/
  condition:
    pe.is_pe and ($version or for any section in pe.sections : (section.name == "UPX0" or section.name == "UPX1"))
}

rule mpress {
  meta:
    type = "Packer"
    name = "MPRESS"
  condition:
    pe.is_pe and for any section in pe.sections : (section.name == ".MPRESS1")
}

rule aspack {
  meta:
    type = "Packer"
    name = "ASPack"
  condition:
    pe.is_pe and for any section in pe.sections : (section.name == ".aspack")
}

rule themida {
  meta:
    type = "Protector"
    name = "Themida"
  condition:
    pe.is_pe and for any section in pe.sections : (section.name == ".themida" or section.name == ".winlice")
}

rule vmprotect {
  meta:
    type = "Protector"
    name = "VMProtect"
  condition:
    pe.is_pe and for any section in pe.sections : (section.name == ".vmp0" or section.name == ".vmp1")
}
