// The error codes of the device services, shared by the object store's last
// error and the registry's results.
#ifndef QUILLORA_PLATFORM_ERROR_CODES_H_
#define QUILLORA_PLATFORM_ERROR_CODES_H_

namespace quillora {

inline constexpr long kErrorSuccess = 0;
inline constexpr long kErrorFileNotFound = 2;       // no such database, key or value
inline constexpr long kErrorAccessDenied = 5;       // the file is read-only
inline constexpr long kErrorInvalidHandle = 6;      // key not open (or closed)
inline constexpr long kErrorNotEnoughMemory = 8;
inline constexpr long kErrorDupName = 52;           // a database of that name exists
inline constexpr long kErrorInvalidParameter = 87;
inline constexpr long kErrorDiskFull = 112;
inline constexpr long kErrorBusy = 170;             // another process holds the file
inline constexpr long kErrorMoreData = 234;         // caller's buffer too small
inline constexpr long kErrorNoMoreItems = 259;      // the end of the records
inline constexpr long kErrorRegistryCorrupt = 1015; // damaged registry file
inline constexpr long kErrorRegistryIoFailed = 1016;
inline constexpr long kErrorInternal = 1359;        // the store's file failed
inline constexpr long kErrorUnsupportedType = 1630; // value has another type

}  // namespace quillora

#endif  // QUILLORA_PLATFORM_ERROR_CODES_H_
