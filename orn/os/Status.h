/// The numbers with which calls of the seam answer: results of waits, and error codes. They are those of Windows on every
/// system. os/windows/ErrorText.cpp compares them with the system's own.
#pragma once

#include "orn/os/Types.h"

namespace ORN::os {

/// How a wait ended: the object was signalled, or the time was over, or the wait failed and lastError() says why.
/// @{
inline constexpr DWORD waitObject = 0;
inline constexpr DWORD waitTimedOut = 258;
inline constexpr DWORD waitFailed = 0xFFFFFFFF;
/// @}

/// A time limit in milliseconds that never ends.
inline constexpr DWORD waitForever = 0xFFFFFFFF;

/// Error codes, with the names that Windows gives them.
/// @{
inline constexpr DWORD errorSuccess = 0;
inline constexpr DWORD errorFileNotFound = 2;
inline constexpr DWORD errorPathNotFound = 3;
inline constexpr DWORD errorTooManyOpenFiles = 4;
inline constexpr DWORD errorAccessDenied = 5;
inline constexpr DWORD errorInvalidHandle = 6;
inline constexpr DWORD errorNotEnoughMemory = 8;
inline constexpr DWORD errorInvalidData = 13;
inline constexpr DWORD errorOutOfMemory = 14;
inline constexpr DWORD errorWriteFault = 29;
inline constexpr DWORD errorGeneralFailure = 31;
inline constexpr DWORD errorSharingViolation = 32;
inline constexpr DWORD errorNotSupported = 50;
inline constexpr DWORD errorInvalidParameter = 87;
inline constexpr DWORD errorDiskFull = 112;
inline constexpr DWORD errorInsufficientBuffer = 122;
inline constexpr DWORD errorModuleNotFound = 126;
inline constexpr DWORD errorProcedureNotFound = 127;
inline constexpr DWORD errorBadPath = 161;
inline constexpr DWORD errorBusy = 170;
inline constexpr DWORD errorAlreadyExists = 183;
inline constexpr DWORD errorMoreData = 234;
inline constexpr DWORD errorNoMoreItems = 259;
inline constexpr DWORD errorInvalidFlags = 1004;
inline constexpr DWORD errorBadDatabase = 1009;
inline constexpr DWORD errorRegistryIo = 1016;
inline constexpr DWORD errorNotRegistryFile = 1017;
inline constexpr DWORD errorKeyDeleted = 1018;
inline constexpr DWORD errorNoUnicodeTranslation = 1113;
inline constexpr DWORD errorInvalidWindow = 1400;
inline constexpr DWORD errorUuidInvalidText = 1705;
inline constexpr DWORD errorUuidNoAddress = 1739;
inline constexpr DWORD errorNotEnoughQuota = 1816;
inline constexpr DWORD errorUuidLocalOnly = 1824;
inline constexpr DWORD errorInvalidProfile = 2011;
inline constexpr DWORD errorTagNotFound = 2012;
inline constexpr DWORD errorInvalidColourSpace = 2017;
inline constexpr DWORD errorInvalidTransform = 2020;
/// @}

}
