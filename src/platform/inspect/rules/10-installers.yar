import "pe"
import "dotnet"

rule nsis {
  meta:
    type = "Installer"
    name = "Nullsoft Scriptable Install System"
  strings:
    // first header behind the program: flags, a magic number and the name
    $header = { EF BE AD DE 4E 75 6C 6C 73 6F 66 74 49 6E 73 74 }
    $version = /Nullsoft Install System v[0-9]{1,2}\.[0-9a-z.]{1,8}/
  condition:
    pe.is_pe and ($header or $version)
}

rule inno_setup {
  meta:
    type = "Installer"
    name = "Inno Setup"
  strings:
    $version = /Inno Setup Setup Data \([0-9]{1,2}(\.[0-9]{1,3}){1,3}/
    $table = { 72 44 6C 50 74 53 CD E6 D7 7B 0B 2A }  // "rDlPtS" and its magic number, the table of offsets
    $comment = "built with Inno Setup" wide
    $old = "Inno"
  condition:
    pe.is_pe and ($version or $table or $comment or $old at 0x30)
}

rule installshield {
  meta:
    type = "Installer"
    name = "InstallShield"
  strings:
    $stream = "ISSetupStream"
    $wide = "InstallShield" wide
    $archive = { 13 5D 65 8C }
  condition:
    pe.is_pe and ($stream or $archive at pe.overlay.offset or (#wide > 1 and pe.overlay.size > 0x10000))
}

rule wix_burn {
  meta:
    type = "Installer"
    name = "WiX Toolset"
    info = "bundle"
  condition:
    pe.is_pe and for any section in pe.sections : (section.name == ".wixburn")
}

rule windows_installer {
  meta:
    type = "Installer"
    name = "Windows Installer"
  strings:
    $database = { 84 10 0C 00 00 00 00 00 C0 00 00 00 00 00 00 46 }  // class id of the root storage
    $patch = { 86 10 0C 00 00 00 00 00 C0 00 00 00 00 00 00 46 }
  condition:
    uint32be(0) == 0xD0CF11E0 and uint32be(4) == 0xA1B11AE1 and ($database or $patch)
}

rule squirrel {
  meta:
    type = "Installer"
    name = "Squirrel"
  strings:
    $directory = "SquirrelTemp" wide ascii
    $resource = "SquirrelSetup" wide ascii
  condition:
    // the updater that stays beside an installed program is managed code
    pe.is_pe and not dotnet.is_dotnet and pe.number_of_resources > 0 and ($directory or $resource)
}

rule cabinet_sfx {
  meta:
    type = "Archive"
    name = "Cabinet"
    info = "self-extracting"
  strings:
    $stub = "wextract.pdb"
    $magic = { 4D 53 43 46 00 00 00 00 }
  condition:
    pe.is_pe and ($stub or $magic at pe.overlay.offset)
}

rule sevenzip_sfx {
  meta:
    type = "Archive"
    name = "7-Zip"
    info = "self-extracting"
  strings:
    $magic = { 37 7A BC AF 27 1C 00 }
    $settings = ";!@Install@!UTF-8!"
  condition:
    pe.is_pe and pe.overlay.size > 0 and ($settings or for any i in (1..#magic) :
      (@magic[i] >= pe.overlay.offset and @magic[i] < pe.overlay.offset + 4096))
}

rule rar_sfx {
  meta:
    type = "Archive"
    name = "RAR"
    info = "self-extracting"
  strings:
    $magic = { 52 61 72 21 1A 07 }
  condition:
    pe.is_pe and pe.overlay.size > 0 and for any i in (1..#magic) :
      (@magic[i] >= pe.overlay.offset and @magic[i] < pe.overlay.offset + 4096)
}

rule zip_sfx {
  meta:
    type = "Archive"
    name = "ZIP"
    info = "self-extracting"
  strings:
    // finished programs that carry their own code or data as an archive
    $java = "META-INF/MANIFEST.MF"
    $engine = "main.lua"
  condition:
    pe.is_pe and pe.overlay.size > 30 and uint32be(pe.overlay.offset) == 0x504B0304 and not $java and not $engine
}

rule plain_archive {
  meta:
    type = "Archive"
    name = "Archive"
  condition:
    uint32be(0) == 0x504B0304 or uint32be(0) == 0x377ABCAF or uint32be(0) == 0x52617221 or uint32be(0) == 0x4D534346
}
