#include "ezFormats/codecs/PacketSound.h"

#include "ezFormats/codecs/CodecWord.h"

namespace {

struct Row {
    BoxType mName;
    const char* mCodec;
    std::uint32_t mBitsPerSample;
    std::uint32_t mPacketBytes = 0;
    std::uint32_t mPacketSamples = 0;
};

constexpr const char* kLPCM = "LPCM";
constexpr const char* kFloat = "PCM-float";

constexpr Row kRows[] = {
    {"NONE", kLPCM, 0},        {"lpcm", kLPCM, 0},          {"ipcm", kLPCM, 0},
    {"twos", kLPCM, 0},        {"sowt", kLPCM, 0}, // the least significant byte first, and no compression
    {"raw ", kLPCM, 8},                            // without a sign
    {"in16", kLPCM, 16},       {"42ni", kLPCM, 24},         {"in24", kLPCM, 24},
    {"23ni", kLPCM, 32},       {"in32", kLPCM, 32},         {"fpcm", kFloat, 0},
    {"fl32", kFloat, 32}, // COMM may state 25 bits, the precision
    {"FL32", kFloat, 32},      {"fl64", kFloat, 64},        {"FL64", kFloat, 64},
    {"ulaw", "ulaw", 0, 1, 1}, {"ULAW", "ulaw", 0, 1, 1},   {"alaw", "alaw", 0, 1, 1},
    {"ALAW", "alaw", 0, 1, 1}, {"ima4", "ima4", 0, 34, 64}, {"MAC3", "MAC3", 0, 2, 6},
    {"MAC6", "MAC6", 0, 1, 6}, {"GSM ", "GSM", 0, 33, 160}, {"agsm", "GSM", 0, 33, 160},
    {"alac", "ALAC", 0},       {"flac", "FLAC", 0},         {"fLaC", "FLAC", 0},
    {"opus", "Opus", 0},       {"Opus", "Opus", 0},         {"aac ", "AAC", 0},
    {"aach", "HE-AAC", 0},     {"aacp", "HE-AACv2", 0},     {"aacl", "AAC-LD", 0},
    {"aace", "AAC-ELD", 0},    {"usac", "xHE-AAC", 0},      {".mp1", "MP1", 0},
    {".mp2", "MP2", 0},        {".mp3", "MP3", 0},          {"ms\0\x55", "MP3", 0},
    {"ac-3", "AC3", 0},        {"ec-3", "EAC3", 0},         {"ac-4", "AC4", 0},
    {"samr", "AMR", 0},        {"sawb", "AMR-WB", 0},       {"sawp", "AMR-WB+", 0},
    {"dtsc", "DTS", 0},        {"dtsh", "DTS-HD", 0}, // of either kind
    {"dtsl", "DTS-HD-MA", 0},  {"dtse", "DTS-HD-LBR", 0},   {"mha1", "MPEG-H", 0},
    {"mha2", "MPEG-H", 0},     {"mhm1", "MPEG-H", 0},       {"mhm2", "MPEG-H", 0},
    {"mlpa", "TrueHD", 0},     {"iamf", "IAMF", 0},
};

} // namespace

PacketSound PacketSoundOf(BoxType aName) {
    PacketSound sound;
    for (const Row& row : kRows) {
        if (row.mName == aName) {
            sound.mCodec = row.mCodec;
            sound.mfPlain = sound.mCodec == kLPCM || sound.mCodec == kFloat;
            sound.mBitsPerSample = row.mBitsPerSample;
            sound.mPacketBytes = row.mPacketBytes;
            sound.mPacketSamples = row.mPacketSamples;
            return sound;
        }
    }
    sound.mCodec = CodecWord_OfFormat(aName);
    return sound;
}
