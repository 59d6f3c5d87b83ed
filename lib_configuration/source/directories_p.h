#pragma once
// Literals shared by the registry's source files.
namespace DirectoriesLiterals {
inline constexpr char C_sourceFile[] = "lib_configuration/source/directories";
inline constexpr char C_keyPath[] = "path";
inline constexpr char C_typeInternal[] = "internal";
inline constexpr char C_typeRemovable[] = "external";
inline constexpr char C_typeNetwork[] = "samba";
inline constexpr char C_roleUsb[] = "usb";
inline constexpr char C_usbAliasName[] = "USB";
}
