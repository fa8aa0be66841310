#pragma once

/// The result codes of the library. The values are fixed: they cross library boundaries as plain
/// integers. Bits 24-27 hold the criticity (0 success, 1 failure, 2 abort, 3 undetermined),
/// bits 16-23 the domain, bits 0-15 the number. The texts are those of `KOVAResult::GetMessage`.
namespace KOVAResultCode {

/// All is done.
inline constexpr int kSuccess = 0x00000000;
/// Some of it is done: see `KOVAResult::operator|=`.
inline constexpr int kPartialSuccess = 0x00000001;
/// Done, and there was nothing to do.
inline constexpr int kNoEntityToTranslate = 0x00000002;
inline constexpr int kNoTranslatableGeometry = 0x00000003;
/// The failures, from the general one to those that say what is wrong.
inline constexpr int kFailure = 0x01000001;
/// Also the type mismatch of typed values and the unknown unit of the unit functions.
inline constexpr int kErrorEncountered = 0x01000002;
inline constexpr int kNotSupported = 0x01000004;
inline constexpr int kNotImplemented = 0x01000005;
inline constexpr int kUnexpectedError = 0x01000007;
/// No text of its own: an option without a typed default, a stream that was never opened.
inline constexpr int kNotInitialized = 0x01000008;
inline constexpr int kInvalidComponent = 0x01000009;
inline constexpr int kInvalidObject = 0x0100000A;
inline constexpr int kInvalidArgument = 0x0100000B;
inline constexpr int kFileNotFound = 0x0100000D;
inline constexpr int kFileOpenError = 0x0100000E;
inline constexpr int kFileSaveError = 0x0100000F;
inline constexpr int kFileEncrypted = 0x01000010;
inline constexpr int kModelExceedsValidBox = 0x01000011;
inline constexpr int kModelBelowValidBox = 0x01000012;
inline constexpr int kInvalidWriteUnit = 0x01000013;
inline constexpr int kFileVersionNotSupported = 0x01000014;
inline constexpr int kInvalidFile = 0x01000015;
inline constexpr int kFileFormatNotSupported = 0x01000016;
/// A second initialisation of the framework in one process. It has no text of its own.
inline constexpr int kAlreadyInitialized = 0x01000018;
/// The outcomes of a read window's allocation and refill; none has a text of its own.
inline constexpr int kWindowNotAllocated = 0x01000051;
inline constexpr int kWindowSizeUndefined = 0x01000053;
inline constexpr int kWindowReadNothing = 0x01000054;
inline constexpr int kWindowReadFailed = 0x01000055;
/// The user wanted it so.
inline constexpr int kAborted = 0x02000003;
/// Nobody has decided yet.
inline constexpr int kUndetermined = 0x03000006;

}  // namespace KOVAResultCode
