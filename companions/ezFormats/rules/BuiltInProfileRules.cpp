#include "ezFormats/rules/BuiltInProfileRules.h"

namespace {

constexpr std::string_view kText = R"table(# Which DLNA profile a media keeps.
#
# A line is a rule: the profile, the MIME types that it is for, and conditions, separated by blanks; "#" begins a
# comment. The first rule all of whose conditions are met gives its name; so a narrow rule stands before a wide
# one. A media that meets none is announced without a profile.
#
# A condition is fact=values: words as they are, numbers, and ranges with both ends in ("1-2", also "2-" and "-2"),
# separated by commas. "k" after a number is 1000, "M" a million. A rate is measured, so it may lie a thousandth above
# a stated one. A fact that is not known, or a rate that varies without a bound, meets no condition.
#
# fact             key       what it is
# audio-codec      ca        MP3, AAC (low complexity), HE-AAC, HE-AACv2, AC3, EAC3, AMR, ...
# sampling-rate    sf        Hz (LPCM: sf, else ar)
# channels         ac        2 is stereo, 6 is 5.1
# audio-bit-rate   ar        bits a second: the maximum ma, else the rate ar, else the estimate ea (LPCM: none)
# bits-per-sample  bs        of audio
# audio-tracks     ta        their number; 0 counts
# video-codec      vc        H264, H265, MPEG4 (part 2), H263, MPEG2, ...
# video-profile    vp        in the codec's words: Baseline, ConstrainedBaseline, Main, High, Simple, ...
# video-level      vl        as the codec writes it: 1.2, 3, 3.1; 0b and 1b lie just below 1; 0 counts
# width            wi        pixels
# height           he        pixels
# frame-rate       fr        pictures a second, such as 25 or 29.97; also met 0.01 below
# video-bit-rate   vr        bits a second: the maximum mv, else the rate vr, else the estimate ev
# bit-rate         br        of the whole media: the maximum mb, else the rate br, else the estimate eb
# process          pr        of a JPEG: baseline, progressive, ...; of a PNG: plain, interlaced
# colours          cr        grey, 4:2:0, 4:2:2, 4:4:4, CMYK, RGB, RGBA, grey-alpha, palette, ...
# bit-depth        cd        bits of a sample of a picture

# Pictures. JPEG_TN and PNG_TN are not here: they are names of thumbnails, and a small picture is no thumbnail.
# Neither are the icons and JPEG_RES_H_V, which say no more of a picture than the sizes here do.
JPEG_SM   image/jpeg  process=baseline colours=grey,4:2:0,4:2:2 width=1-640 height=1-480
JPEG_MED  image/jpeg  process=baseline colours=grey,4:2:0,4:2:2 width=1-1024 height=1-768
JPEG_LRG  image/jpeg  process=baseline colours=grey,4:2:0,4:2:2 width=1-4096 height=1-4096
PNG_LRG   image/png   process=plain colours=grey,grey-alpha,palette,RGB,RGBA bit-depth=8 width=1-4096 height=1-4096
PNG_LRG   image/png   process=plain colours=grey bit-depth=16 width=1-4096 height=1-4096

# MPEG audio. MP3X adds the sampling rates of MPEG-2; those of MPEG-2.5 have no profile.
MP3   audio/mpeg  audio-codec=MP3 sampling-rate=32k,44.1k,48k channels=1-2 audio-bit-rate=32k-320k
MP3X  audio/mpeg  audio-codec=MP3 sampling-rate=16k,22.05k,24k,32k,44.1k,48k channels=1-2 audio-bit-rate=8k-320k

# AAC. HE-AACv2 has profiles of its own, whose limits are not verified: it has none here.
AAC_ISO_320       audio/mp4,audio/3gpp  audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-320k
AAC_ISO           audio/mp4,audio/3gpp  audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-576k
AAC_MULT5_ISO     audio/mp4,audio/3gpp  audio-codec=AAC sampling-rate=8k-48k channels=3-6 audio-bit-rate=1-1440k
HEAAC_L2_ISO_320  audio/mp4,audio/3gpp  audio-codec=HE-AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-320k
HEAAC_L2_ISO      audio/mp4,audio/3gpp  audio-codec=HE-AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-576k
HEAAC_MULT5_ISO   audio/mp4,audio/3gpp  audio-codec=HE-AAC sampling-rate=8k-48k channels=3-6 audio-bit-rate=1-1440k

# AMR. Its rate is that of the speech, by the type of its frames: the bytes of a file are more.
AMR_3GPP    audio/mp4,audio/3gpp  audio-codec=AMR sampling-rate=8k channels=1 audio-bit-rate=4.75k-12.2k
AMR_WBplus  audio/mp4,audio/3gpp  audio-codec=AMR-WB+ sampling-rate=8k-48k channels=1-2 audio-bit-rate=5.2k-48k

# H.264 in MP4. A size is the largest, each side by itself, and with a rate it is a line. Where nothing is published of the rate of the pictures, it is what
# the level can do at that size; where nothing is published of the audio, it is that of the next smaller form.

# H.264, baseline. What keeps the constraints of both (A.2.1.1) is a stream of the main and high profiles, too.
AVC_MP4_BL_CIF15_AAC_520    video/mp4  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-1.2 width=1-352 height=1-288 frame-rate=1-15 video-bit-rate=1-384k bit-rate=1-520k audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-128k
AVC_MP4_BL_CIF15_AAC_520    video/mp4  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-1.2 width=1-352 height=1-240 frame-rate=1-18 video-bit-rate=1-384k bit-rate=1-520k audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-128k
AVC_MP4_BL_CIF15_AAC_520    video/mp4  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-1.2 width=1-320 height=1-240 frame-rate=1-20 video-bit-rate=1-384k bit-rate=1-520k audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-128k
AVC_MP4_BL_CIF15_AAC_520    video/mp4  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-1.2 width=1-320 height=1-180 frame-rate=1-26 video-bit-rate=1-384k bit-rate=1-520k audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-128k
AVC_MP4_BL_CIF15_AAC_520    video/mp4  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-1.2 width=1-240 height=1-180 frame-rate=1-30 video-bit-rate=1-384k bit-rate=1-520k audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-128k
AVC_MP4_BL_CIF15_AAC        video/mp4  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-1.2 width=1-352 height=1-288 frame-rate=1-15 video-bit-rate=1-384k bit-rate=1-600k audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-200k
AVC_MP4_BL_CIF15_AAC        video/mp4  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-1.2 width=1-352 height=1-240 frame-rate=1-18 video-bit-rate=1-384k bit-rate=1-600k audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-200k
AVC_MP4_BL_CIF15_AAC        video/mp4  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-1.2 width=1-320 height=1-240 frame-rate=1-20 video-bit-rate=1-384k bit-rate=1-600k audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-200k
AVC_MP4_BL_CIF15_AAC        video/mp4  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-1.2 width=1-320 height=1-180 frame-rate=1-26 video-bit-rate=1-384k bit-rate=1-600k audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-200k
AVC_MP4_BL_CIF15_AAC        video/mp4  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-1.2 width=1-240 height=1-180 frame-rate=1-30 video-bit-rate=1-384k bit-rate=1-600k audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-200k
AVC_MP4_BL_CIF30_AAC_940    video/mp4  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-1.3 width=1-352 height=1-288 frame-rate=1-30 video-bit-rate=1-768k bit-rate=1-940k audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-128k
AVC_MP4_BL_L2_CIF30_AAC     video/mp4  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-2 width=1-352 height=1-288 frame-rate=1-30 video-bit-rate=1-1.3M bit-rate=1-1.3M audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-200k
AVC_MP4_BL_CIF30_AAC_MULT5  video/mp4  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-2 width=1-352 height=1-288 frame-rate=1-30 video-bit-rate=1-2M bit-rate=1-3M audio-codec=AAC sampling-rate=8k-48k channels=1-6 audio-bit-rate=1-1440k
AVC_MP4_BL_CIF30_AC3        video/mp4  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-2 width=1-352 height=1-288 frame-rate=1-30 video-bit-rate=1-2M bit-rate=1-3M audio-codec=AC3 sampling-rate=32k,44.1k,48k channels=1-6 audio-bit-rate=64k-640k
AVC_MP4_BL_CIF30_MPEG1_L3   video/mp4  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-2 width=1-352 height=1-288 frame-rate=1-30 video-bit-rate=1-2M bit-rate=1-3M audio-codec=MP3 sampling-rate=32k,44.1k,48k channels=1-2 audio-bit-rate=32k-320k
AVC_MP4_BL_L3_SD_AAC        video/mp4  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-3 width=1-720 height=1-576 frame-rate=1-25 video-bit-rate=1-4M audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k
AVC_MP4_BL_L3_SD_AAC        video/mp4  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-3 width=1-720 height=1-480 frame-rate=1-29.97 video-bit-rate=1-4M audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k
AVC_MP4_BL_L3_SD_AAC        video/mp4  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-3 width=1-640 height=1-480 frame-rate=1-30 video-bit-rate=1-4M audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k
AVC_MP4_BL_L3L_SD_AAC       video/mp4  video-codec=H264 video-profile=ConstrainedBaseline video-level=1b-3 width=1-720 height=1-576 frame-rate=1-25 video-bit-rate=1-4.5M bit-rate=1-5M audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k
AVC_MP4_BL_L3L_SD_AAC       video/mp4  video-codec=H264 video-profile=ConstrainedBaseline video-level=1b-3 width=1-720 height=1-480 frame-rate=1-29.97 video-bit-rate=1-4.5M bit-rate=1-5M audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k
AVC_MP4_BL_L3L_SD_AAC       video/mp4  video-codec=H264 video-profile=ConstrainedBaseline video-level=1b-3 width=1-640 height=1-480 frame-rate=1-30 video-bit-rate=1-4.5M bit-rate=1-5M audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k

# H.264, main. The i of 1080i is no condition: its limits are those of the size, whole pictures or fields.
AVC_MP4_MP_SD_AAC_MULT5     video/mp4  video-codec=H264 video-profile=ConstrainedBaseline,Main video-level=1b-3 width=1-720 height=1-576 frame-rate=1-25 video-bit-rate=1-10M audio-codec=AAC sampling-rate=8k-48k channels=1-6 audio-bit-rate=1-1440k
AVC_MP4_MP_SD_AAC_MULT5     video/mp4  video-codec=H264 video-profile=ConstrainedBaseline,Main video-level=1b-3 width=1-720 height=1-480 frame-rate=1-30 video-bit-rate=1-10M audio-codec=AAC sampling-rate=8k-48k channels=1-6 audio-bit-rate=1-1440k
AVC_MP4_MP_SD_AC3           video/mp4  video-codec=H264 video-profile=ConstrainedBaseline,Main video-level=1b-3 width=1-720 height=1-576 frame-rate=1-25 video-bit-rate=1-10M audio-codec=AC3 sampling-rate=32k,44.1k,48k channels=1-6 audio-bit-rate=64k-640k
AVC_MP4_MP_SD_AC3           video/mp4  video-codec=H264 video-profile=ConstrainedBaseline,Main video-level=1b-3 width=1-720 height=1-480 frame-rate=1-30 video-bit-rate=1-10M audio-codec=AC3 sampling-rate=32k,44.1k,48k channels=1-6 audio-bit-rate=64k-640k
AVC_MP4_MP_SD_MPEG1_L3      video/mp4  video-codec=H264 video-profile=ConstrainedBaseline,Main video-level=1b-3 width=1-720 height=1-576 frame-rate=1-25 video-bit-rate=1-10M audio-codec=MP3 sampling-rate=32k,44.1k,48k channels=1-2 audio-bit-rate=32k-320k
AVC_MP4_MP_SD_MPEG1_L3      video/mp4  video-codec=H264 video-profile=ConstrainedBaseline,Main video-level=1b-3 width=1-720 height=1-480 frame-rate=1-30 video-bit-rate=1-10M audio-codec=MP3 sampling-rate=32k,44.1k,48k channels=1-2 audio-bit-rate=32k-320k

# H.264, baseline again, where nothing smaller fits.
AVC_MP4_BL_L31_HD_AAC       video/mp4  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-3.1 width=1-1280 height=1-720 frame-rate=1-30 video-bit-rate=1-14M bit-rate=1-15M audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k
AVC_MP4_BL_L32_HD_AAC       video/mp4  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-3.2 width=1-1280 height=1-720 frame-rate=1-60 video-bit-rate=1-20M bit-rate=1-21M audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k

# H.264, main, in high definition.
AVC_MP4_MP_HD_720p_AAC      video/mp4  video-codec=H264 video-profile=ConstrainedBaseline,Main video-level=1b-3.1 width=1-1280 height=1-720 frame-rate=1-30 video-bit-rate=1-14M bit-rate=1-15M audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-576k
AVC_MP4_MP_HD_720p_AAC      video/mp4  video-codec=H264 video-profile=ConstrainedBaseline,Main video-level=1b-3.1 width=1-640 height=1-480 frame-rate=1-60 video-bit-rate=1-14M bit-rate=1-15M audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-576k
AVC_MP4_MP_HD_1080i_AAC     video/mp4  video-codec=H264 video-profile=ConstrainedBaseline,Main video-level=1b-4 width=1-1920 height=1-1080 frame-rate=1-30 video-bit-rate=1-20M bit-rate=1-21M audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-576k
AVC_MP4_MP_HD_1080i_AAC     video/mp4  video-codec=H264 video-profile=ConstrainedBaseline,Main video-level=1b-4 width=1-1280 height=1-720 frame-rate=1-60 video-bit-rate=1-20M bit-rate=1-21M audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-576k

# H.264, high. Its decoders take main.
AVC_MP4_HP_HD_AAC           video/mp4  video-codec=H264 video-profile=ConstrainedBaseline,Main,High video-level=1b-4 width=1-1280 height=1-720 frame-rate=1-60 video-bit-rate=1-25M audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k
AVC_MP4_HP_HD_AAC           video/mp4  video-codec=H264 video-profile=ConstrainedBaseline,Main,High video-level=1b-4 width=1-1920 height=1-1080 frame-rate=1-30 video-bit-rate=1-25M audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k
AVC_MP4_HP_HD_EAC3          video/mp4  video-codec=H264 video-profile=ConstrainedBaseline,Main,High video-level=1b-4 width=1-1280 height=1-720 frame-rate=1-60 video-bit-rate=1-25M audio-codec=EAC3 sampling-rate=32k,44.1k,48k channels=1-6 audio-bit-rate=32k-3024k
AVC_MP4_HP_HD_EAC3          video/mp4  video-codec=H264 video-profile=ConstrainedBaseline,Main,High video-level=1b-4 width=1-1920 height=1-1080 frame-rate=1-30 video-bit-rate=1-25M audio-codec=EAC3 sampling-rate=32k,44.1k,48k channels=1-6 audio-bit-rate=32k-3024k

# MPEG-4 part 2, simple. The limits of the advanced simple profile
# (MPEG4_P2_MP4_ASP_AAC) are not verified: such media have no profile here.
MPEG4_P2_MP4_SP_L2_AAC      video/mp4   video-codec=MPEG4 video-profile=Simple video-level=0-2 width=1-176 height=1-144 frame-rate=1-30 video-bit-rate=1-128k audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-128k
MPEG4_P2_MP4_SP_L2_AAC      video/mp4   video-codec=MPEG4 video-profile=Simple video-level=0-2 width=1-352 height=1-288 frame-rate=1-15 video-bit-rate=1-128k audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-128k
MPEG4_P2_MP4_SP_AAC         video/mp4   video-codec=MPEG4 video-profile=Simple video-level=0,1 width=1-352 height=1-288 frame-rate=1-30 video-bit-rate=1-64k bit-rate=1-600k audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-216k
MPEG4_P2_MP4_SP_AAC         video/mp4   video-codec=MPEG4 video-profile=Simple video-level=0b,2 width=1-352 height=1-288 frame-rate=1-30 video-bit-rate=1-128k bit-rate=1-600k audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-216k
MPEG4_P2_MP4_SP_AAC         video/mp4   video-codec=MPEG4 video-profile=Simple video-level=3 width=1-352 height=1-288 frame-rate=1-30 video-bit-rate=1-384k bit-rate=1-600k audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-216k
MPEG4_P2_MP4_SP_VGA_AAC     video/mp4   video-codec=MPEG4 video-profile=Simple video-level=0-3 width=1-640 height=1-480 frame-rate=1-30 video-bit-rate=1-3M audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k
MPEG4_P2_MP4_SP_L5_AAC      video/mp4   video-codec=MPEG4 video-profile=Simple video-level=0,1 width=1-720 height=1-576 frame-rate=1-25 video-bit-rate=1-64k audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k
MPEG4_P2_MP4_SP_L5_AAC      video/mp4   video-codec=MPEG4 video-profile=Simple video-level=0,1 width=1-720 height=1-480 frame-rate=1-30 video-bit-rate=1-64k audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k
MPEG4_P2_MP4_SP_L5_AAC      video/mp4   video-codec=MPEG4 video-profile=Simple video-level=0b,2 width=1-720 height=1-576 frame-rate=1-25 video-bit-rate=1-128k audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k
MPEG4_P2_MP4_SP_L5_AAC      video/mp4   video-codec=MPEG4 video-profile=Simple video-level=0b,2 width=1-720 height=1-480 frame-rate=1-30 video-bit-rate=1-128k audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k
MPEG4_P2_MP4_SP_L5_AAC      video/mp4   video-codec=MPEG4 video-profile=Simple video-level=3 width=1-720 height=1-576 frame-rate=1-25 video-bit-rate=1-384k audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k
MPEG4_P2_MP4_SP_L5_AAC      video/mp4   video-codec=MPEG4 video-profile=Simple video-level=3 width=1-720 height=1-480 frame-rate=1-30 video-bit-rate=1-384k audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k
MPEG4_P2_MP4_SP_L5_AAC      video/mp4   video-codec=MPEG4 video-profile=Simple video-level=5 width=1-720 height=1-576 frame-rate=1-25 video-bit-rate=1-8M audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k
MPEG4_P2_MP4_SP_L5_AAC      video/mp4   video-codec=MPEG4 video-profile=Simple video-level=5 width=1-720 height=1-480 frame-rate=1-30 video-bit-rate=1-8M audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k
MPEG4_P2_MP4_SP_L6_AAC      video/mp4   video-codec=MPEG4 video-profile=Simple video-level=0,1 width=1-1280 height=1-720 frame-rate=1-30 video-bit-rate=1-64k audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k
MPEG4_P2_MP4_SP_L6_AAC      video/mp4   video-codec=MPEG4 video-profile=Simple video-level=0b,2 width=1-1280 height=1-720 frame-rate=1-30 video-bit-rate=1-128k audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k
MPEG4_P2_MP4_SP_L6_AAC      video/mp4   video-codec=MPEG4 video-profile=Simple video-level=3 width=1-1280 height=1-720 frame-rate=1-30 video-bit-rate=1-384k audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k
MPEG4_P2_MP4_SP_L6_AAC      video/mp4   video-codec=MPEG4 video-profile=Simple video-level=4 width=1-1280 height=1-720 frame-rate=1-30 video-bit-rate=1-4M audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k
MPEG4_P2_MP4_SP_L6_AAC      video/mp4   video-codec=MPEG4 video-profile=Simple video-level=5 width=1-1280 height=1-720 frame-rate=1-30 video-bit-rate=1-8M audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k
MPEG4_P2_MP4_SP_L6_AAC      video/mp4   video-codec=MPEG4 video-profile=Simple video-level=6 width=1-1280 height=1-720 frame-rate=1-30 video-bit-rate=1-12M audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k
MPEG4_P2_3GPP_SP_L0B_AAC    video/3gpp  video-codec=MPEG4 video-profile=Simple video-level=0,0b width=1-176 height=1-144 frame-rate=1-15 video-bit-rate=1-128k audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-128k
MPEG4_P2_3GPP_SP_L0B_AMR    video/3gpp  video-codec=MPEG4 video-profile=Simple video-level=0,0b width=1-176 height=1-144 frame-rate=1-15 video-bit-rate=1-128k audio-codec=AMR sampling-rate=8k channels=1 audio-bit-rate=4.75k-12.2k

# H.263. A record holds ten times a level; what H.263 names level 10 is written 1, therefore.
MPEG4_H263_MP4_P0_L10_AAC          video/3gpp  video-codec=H263 video-profile=0 video-level=1 width=1-176 height=1-144 frame-rate=1-15 video-bit-rate=1-64k bit-rate=1-150k audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-86k
MPEG4_H263_3GPP_P0_L10_AMR_WBplus  video/3gpp  video-codec=H263 video-profile=0 video-level=1 width=1-176 height=1-144 frame-rate=1-15 video-bit-rate=1-64k bit-rate=1-150k audio-codec=AMR-WB+ sampling-rate=8k-48k channels=1-2 audio-bit-rate=5.2k-48k
MPEG4_H263_3GPP_P3_L10_AMR         video/3gpp  video-codec=H263 video-profile=3 video-level=1 width=1-176 height=1-144 frame-rate=1-15 video-bit-rate=1-64k bit-rate=1-150k audio-codec=AMR sampling-rate=8k channels=1 audio-bit-rate=4.75k-12.2k
)table";

} // namespace

std::string_view BuiltInProfileRules_Text() {
    return kText;
}
