#pragma once

namespace marl {

/// Result of a port's operation, with the platform's own numbers. Ports never throw.
enum Status : long {
  kOk = 0,
  kFileNotFound = 2,
  kPathNotFound = 3,
  kAccessDenied = 5,
  kInvalidHandle = 6,
  kTypeMismatch = 13,  // used by the registry classes only
  kNoMoreFiles = 18,
  kSharingViolation = 32,
  kInvalidParameter = 87,
  kInvalidName = 123,
  kAlreadyExists = 183,
  kMoreData = 234,
  kNoMoreItems = 259,
  kElevationRequired = 740,
  kKeyDeleted = 1018,
  kGeneralFailure = 31,
};

}  // namespace marl
