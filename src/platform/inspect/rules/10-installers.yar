import "pe"
import "dotnet"

rule nsis {
  meta:
    type = "Installer"
    name = "Nullsoft Scriptable Install System"
  strings:
    // a magic number and the name, behind four bytes of flags
    $header = { EF BE AD DE 4E 75 6C 6C 73 6F 66 74 49 6E 73 74 }
    $version = /Nullsoft Install System v[0-9]{1,2}\.[0-9a-z.]{1,8}/
    $manifest = "name=\"Nullsoft.NSIS.exehead\""
  condition:
    // Unpackers hold the magic number too; a setup has it at the beginning of a block of 512 bytes behind its sections.
    pe.is_pe and #version >= 0 and (
      (pe.overlay.size > 0 and for any i in (0..16) : ($header at ((pe.overlay.offset + 511) \ 512 + i) * 512 + 4)) or
      for any resource in pe.resources : (resource.type == pe.RESOURCE_TYPE_MANIFEST and
        $manifest in (resource.offset..resource.offset + resource.length)))
}

rule inno_setup {
  meta:
    type = "Installer"
    name = "Inno Setup"
  strings:
    $version = /Inno Setup Setup Data \([0-9]{1,2}(\.[0-9]{1,3}){1,3}/
    $table = { 72 44 6C 50 74 53 CD E6 D7 7B 0B 2A }  // "rDlPtS" and its magic number, the table of offsets
    $comment = "This installation was built with Inno Setup" wide
    $old = "Inno"
  condition:
    pe.is_pe and ($old at 0x30 or
      (pe.overlay.size > 0 and $version in (pe.overlay.offset..filesize)) or
      for any resource in pe.resources : (
        (resource.type == pe.RESOURCE_TYPE_RCDATA and $table at resource.offset) or
        (resource.type == pe.RESOURCE_TYPE_VERSION and $comment in (resource.offset..resource.offset + resource.length))))
}

// Set-ups that start a Windows Installer package, those with cabinets of their own and those of a single file begin with
// the same launcher. Its code never names the tool; its version block does. Where a publisher has filled that in, the
// tool's own keys or file name are left.
private rule installshield_launcher {
  condition:
    for any entry in pe.version_info_list : (entry.key == "ISInternalVersion" or entry.key == "ISInternalDescription" or
      (entry.key == "OriginalFilename" and entry.value iequals "InstallShield Setup.exe")) or
    // The tool's makers, one after the other; each has written other programs too.
    (for any entry in pe.version_info_list : (
        (entry.key == "CompanyName" or entry.key == "ProductName" or entry.key == "LegalCopyright") and
        entry.value matches /InstallShield|Stirling Technologies|Macrovision|Acresso|Flexera|Revenera/) and
      for any entry in pe.version_info_list : (
        (entry.key == "FileDescription" and entry.value matches /Setup Launcher|PackageForTheWeb Stub/i) or
        (entry.key == "OriginalFilename" and entry.value matches /^(setup|stub32i?)\.exe$/i)))
}

rule installshield {
  meta:
    type = "Installer"
    name = "InstallShield"
  strings:
    // What a single file carries behind its sections begins with one of these. The first two are heads of 46 bytes with
    // the number of files; the others the heads of the tool's archives, up to version 3 (.z) and since version 5 (.cab).
    $stream = "ISSetupStream"
    $plain = "InstallShield\x00"
    $archive = { 13 5D 65 8C }
    $cabinet = "ISc("
    // Or with the first file's name, path, version and size as text.
    $list = /[ -~]{1,200}\x00Disk1\\[ -~]{1,200}\x00[0-9., ]{0,40}\x00[0-9]{1,10}\x00/
    // the title of its windows in all languages, with the mark as three letters or as one
    $wizard = /InstallShield(\(R\)|\xAE)? Wizard/ wide
    $manifest = "InstallShield.Setup"
  condition:
    // Libraries of the engine have the same texts.
    pe.is_pe and (pe.characteristics & pe.DLL) == 0 and (installshield_launcher or
      (pe.overlay.size > 0 and ($list at pe.overlay.offset + 4 or
        for any of ($stream, $plain, $archive, $cabinet, $list) : ($ at pe.overlay.offset))) or
      for any resource in pe.resources : (
        (resource.type == pe.RESOURCE_TYPE_MANIFEST and $manifest in (resource.offset..resource.offset + resource.length)) or
        ((resource.type == pe.RESOURCE_TYPE_STRING or resource.type == pe.RESOURCE_TYPE_DIALOG) and
          $wizard in (resource.offset..resource.offset + resource.length))))
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
    // A document may hold a package; only the class of the first entry of the directory is the file's own.
    uint32be(0) == 0xD0CF11E0 and uint32be(4) == 0xA1B11AE1 and uint16(0x1E) <= 12 and
    for any of them : ($ at ((uint32(0x30) + 1) << uint16(0x1E)) + 0x50)
}

// A set-up around a package of the Windows Installer has it behind its sections, or as a resource that is most of the
// file; a program that brings a small one to install it elsewhere is none. The package is known as above. Of a large
// file only the beginning is looked at, often without the package's directory: then the package is most of what is
// there, and the program names the one that installs it.
rule windows_installer_sfx {
  meta:
    type = "Installer"
    name = "Windows Installer"
    info = "self-extracting"
  strings:
    $compound = { D0 CF 11 E0 A1 B1 1A E1 }
    $database = { 84 10 0C 00 00 00 00 00 C0 00 00 00 00 00 00 46 }
    $patch = { 86 10 0C 00 00 00 00 00 C0 00 00 00 00 00 00 46 }
    $installer = "msiexec" nocase wide ascii
  condition:
    pe.is_pe and for any i in (1..16) : (i <= #compound and uint16(@compound[i] + 0x1E) <= 12 and (
      (pe.overlay.size > 0 and @compound[i] >= pe.overlay.offset and @compound[i] <= pe.overlay.offset + 4096) or
      for any resource in pe.resources : (resource.offset == @compound[i] and
        (resource.length * 2 > filesize or (filesize - resource.offset) * 2 > filesize))) and (
      for any of ($database, $patch) : (
        $ at @compound[i] + ((uint32(@compound[i] + 0x30) + 1) << uint16(@compound[i] + 0x1E)) + 0x50) or
      ($installer and (filesize - @compound[i]) * 2 > filesize and
        @compound[i] + ((uint32(@compound[i] + 0x30) + 1) << uint16(@compound[i] + 0x1E)) > filesize)))
}

rule squirrel {
  meta:
    type = "Installer"
    name = "Squirrel"
  strings:
    $directory = "SquirrelTemp" wide
    $log = "SquirrelSetup" wide
  condition:
    // the package that is to be installed stands in a resource; programs that only know the updater have none
    pe.is_pe and not dotnet.is_dotnet and any of them and
    for any resource in pe.resources : (resource.type_string == "D\x00A\x00T\x00A\x00" and resource.id == 131)
}

rule cabinet_sfx {
  meta:
    type = "Archive"
    name = "Cabinet"
    info = "self-extracting"
  strings:
    $magic = { 4D 53 43 46 00 00 00 00 }
    // the whole head of a cabinet of version 1.3, the only one there is
    $head = { 4D 53 43 46 00 00 00 00 [4] 00 00 00 00 [4] 00 00 00 00 03 01 }
  condition:
    // Windows' own unpacker has it as the resource CABINET; in a finished program it would be the lesser part.
    pe.is_pe and (pe.pdb_path endswith "wextract.pdb" or (pe.overlay.size > 0 and ($magic at pe.overlay.offset or
        $head in (pe.overlay.offset..pe.overlay.offset + 4096))) or
      for any resource in pe.resources : ($head at resource.offset and (resource.length * 2 > filesize or
        resource.name_string == "C\x00A\x00B\x00I\x00N\x00E\x00T\x00")))
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
    pe.is_pe and pe.overlay.size > 0 and ($magic in (pe.overlay.offset..pe.overlay.offset + 4096) or
      $settings in (pe.overlay.offset..pe.overlay.offset + 16))
}

rule rar_sfx {
  meta:
    type = "Archive"
    name = "RAR"
    info = "self-extracting"
  strings:
    $magic = { 52 61 72 21 1A 07 }
  condition:
    pe.is_pe and pe.overlay.size > 0 and $magic in (pe.overlay.offset..pe.overlay.offset + 4096)
}

rule zip_sfx {
  meta:
    type = "Archive"
    name = "ZIP"
    info = "self-extracting"
  strings:
    $infozip = "UnZipSFX"
    $winzip = "WinZip Self-Extractor" wide ascii
    $winrar = "WinRAR SFX"
  condition:
    // Many finished programs carry their code or data as a ZIP behind them; only these unpack it.
    pe.is_pe and (for any section in pe.sections : (section.name == "_winzip_") or
      (any of them and pe.overlay.size > 30 and uint32be(pe.overlay.offset) == 0x504B0304))
}

rule plain_archive {
  meta:
    type = "Archive"
    name = "Archive"
  condition:
    uint32be(0) == 0x504B0304 or uint32be(0) == 0x377ABCAF or uint32be(0) == 0x52617221 or uint32be(0) == 0x4D534346
}
