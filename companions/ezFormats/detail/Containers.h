#pragma once

#include <array>
#include <string_view>

/// @name Words of kezInfo_Container
/// A parser of a container states one of them, and a profile rule can ask for one of them.
/// @{
inline constexpr const char* kContainer_MP4 = "MP4";
inline constexpr const char* kContainer_3GP = "3GP";
inline constexpr const char* kContainer_3G2 = "3G2";
inline constexpr const char* kContainer_MOV = "MOV";
inline constexpr const char* kContainer_PS = "PS";            ///< program stream, ISO/IEC 13818-1, 2.5
inline constexpr const char* kContainer_MPEG1 = "MPEG1";      ///< system stream, ISO/IEC 11172-1
inline constexpr const char* kContainer_TS = "TS";            ///< transport stream, packets of 188 bytes
inline constexpr const char* kContainer_TTS = "TTS";          ///< of 192 bytes, time stamps not all zero
inline constexpr const char* kContainer_TTSZero = "TTS-zero"; ///< of 192 bytes, all time stamps zero
inline constexpr const char* kContainer_MKV = "MKV";
inline constexpr const char* kContainer_WebM = "WebM";
inline constexpr const char* kContainer_ASF = "ASF";
inline constexpr const char* kContainer_AVI = "AVI";
inline constexpr const char* kContainer_FLV = "FLV";
inline constexpr const char* kContainer_RM = "RM";
inline constexpr const char* kContainer_DV = "DV";
inline constexpr const char* kContainer_MXF = "MXF";
inline constexpr const char* kContainer_Ogg = "Ogg";
/// @}

inline constexpr std::array<std::string_view, 18> kContainers = {
    kContainer_MP4, kContainer_3GP, kContainer_3G2,     kContainer_MOV, kContainer_PS,   kContainer_MPEG1,
    kContainer_TS,  kContainer_TTS, kContainer_TTSZero, kContainer_MKV, kContainer_WebM, kContainer_ASF,
    kContainer_AVI, kContainer_FLV, kContainer_RM,      kContainer_DV,  kContainer_MXF,  kContainer_Ogg};
