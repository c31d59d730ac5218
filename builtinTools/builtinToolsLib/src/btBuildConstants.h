#pragma once
// The build record of the library, kept in one place: a new build changes
// these lines only.
namespace Qv::BtBuildConstants {
inline constexpr char PRODUCT_NAME[] = "Ostrand Brumo Library";
inline constexpr char LIBRARY_NAME[] = "libQvbuiltinTools";
inline constexpr char RELEASE[] = "2013";
inline constexpr char VERSION_STRING[] = "8.0";
inline constexpr int MAJOR_VERSION = 8;
inline constexpr int MINOR_VERSION = 0;
// Release stage code; DEVELOPMENT_STAGE marks a development build.
inline constexpr int STAGE = 42;
inline constexpr int DEVELOPMENT_STAGE = 3;
inline constexpr char DEVELOPMENT_SUFFIX[] = "dev";
inline constexpr char BUILD_NUMBER[] = "2600";
inline constexpr char BUILD_DATE[] = "Jun 12 2012";
inline constexpr char BUILD_CONFIGURATION[] = "opt.x86_64.intel";
} // namespace Qv::BtBuildConstants
