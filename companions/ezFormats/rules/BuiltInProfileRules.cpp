#include "ezFormats/rules/BuiltInProfileRules.h"

namespace {

constexpr std::string_view kText = R"table(# Which DLNA profile a file or stream keeps.
#
# A line is a rule: the profile, the MIME types that it is for, and conditions, separated by blanks; "#" begins a
# comment. The first rule all of whose conditions are met gives its name; so a narrow rule stands before a wide
# one. What meets none is announced without a profile.
#
# A MIME type may be followed by ">" and another one: a record of the first is then announced with the second, which
# the profile asks for, and a record of the second keeps the profile, too.
#
# A condition is fact=values: words as they are, numbers, and ranges with both ends in ("1-2", also "2-" and "-2"),
# separated by commas. "k" after a number is 1000, "M" a million. A rate is measured, so it may lie a thousandth above
# a stated one. A fact that is not known, or a rate that varies without a bound, meets no condition. A size is
# "352x288", or "-352x288" for each side up to it by itself, and "@" may add the frame rates at that size: "@25",
# "@1-30".
#
# "ending" makes an end of names, with the MIME types and conditions that go with it: a rule that names endings in place
# of MIME types is one for each of them.
#
# "inferred" after a rule: what is published of the profile names it and does not tell its limits, which are those of
# the standard that its name points to. Such rules count where the table says "inferred on".
#
# "region=" after a rule: EU, NA, JP or KO, whose name it gives. Where the table says "region KO", all rules of Korea
# stand before all others. Without such a line they stand where they are: a frame rate of 25 or 50 has names of Europe,
# any other those of North America first.
#
# fact             key       what it is
# container        ct        MP4, 3GP, 3G2, MOV, PS, MPEG1, TS, TTS, TTS-zero, MKV, WebM, ASF, AVI, FLV, RM, DV, MXF, Ogg
# audio-codec      ca        MP1, MP2, MP3, AAC (low complexity), AAC-LTP, HE-AAC, HE-AACv2, AC3, EAC3, AMR, AMR-WB+,
#                            DTS, DTS-HD-HRA, DTS-HD-MA, WMA1, WMA2, WMA-Pro, WMA-lossless, WMA-voice, LPCM, ...
# sampling-rate    sf        Hz (LPCM: sf, else ar)
# channels         ac        2 is stereo, 6 is 5.1
# audio-bit-rate   ar        bits a second: the maximum ma, else the rate ar, else the estimate ea (LPCM: none)
# bits-per-sample  bs        of audio
# audio-tracks     ta        their number; 0 counts
# video-codec      vc        H264, H265, MPEG1, MPEG2, MPEG4 (part 2), H263, WMV1, WMV2, WMV3, VC1, ...
# video-profile    vp        in the codec's words: Baseline, ConstrainedBaseline, Main, High, Simple, Advanced, ...
# video-level      vl        as the codec writes it: 1.2, 3, 3.1; 0b and 1b lie just below 1; Low, Main or Medium,
#                            High1440 and High are 1 to 4; 0 counts
# width            wi        pixels
# height           he        pixels
# frame-rate       fr        pictures a second, such as 25 or 29.97; also met 0.01 below
# size                       width and height together, and a frame rate where one is added
# video-bit-rate   vr        bits a second: the maximum mv, else the rate vr, else the estimate ev
# bit-rate         br        of the whole media: the maximum mb, else the rate br, else the estimate eb
# process          pr        of a JPEG: baseline, progressive, ...; of a PNG: plain, interlaced; of video: progressive,
#                            interlaced
# colours          cr        grey, 4:2:0, 4:2:2, 4:4:4, CMYK, RGB, RGBA, grey-alpha, palette, ...
# bit-depth        cd        bits of a sample of a picture

inferred off
# region EU

# Pictures. JPEG_TN and PNG_TN are not here: they are names of thumbnails, and a small picture is no thumbnail.
# Neither are the icons and JPEG_RES_H_V, which say no more of a picture than the sizes here do.
JPEG_SM   image/jpeg  process=baseline colours=grey,4:2:0,4:2:2 size=-640x480
JPEG_MED  image/jpeg  process=baseline colours=grey,4:2:0,4:2:2 size=-1024x768
JPEG_LRG  image/jpeg  process=baseline colours=grey,4:2:0,4:2:2 size=-4096x4096
PNG_LRG   image/png   process=plain colours=grey,grey-alpha,palette,RGB,RGBA bit-depth=8 size=-4096x4096
PNG_LRG   image/png   process=plain colours=grey bit-depth=16 size=-4096x4096

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

# AAC in ADTS frames. Their headers tell the core alone: at up to 24 kHz it may be that of HE-AAC, which nothing says, and
# there is no telling which of AAC_ADTS and HEAAC_L2_ADTS it is. No file says that it is of HEAAC_L3, HEAAC_MULT5 or
# HE-AACv2.
AAC_ADTS_320    audio/aac>audio/vnd.dlna.adts  audio-codec=AAC sampling-rate=32k-48k channels=1-2 audio-bit-rate=1-320k
AAC_ADTS        audio/aac>audio/vnd.dlna.adts  audio-codec=AAC sampling-rate=32k-48k channels=1-2 audio-bit-rate=1-576k
AAC_MULT5_ADTS  audio/aac>audio/vnd.dlna.adts  audio-codec=AAC sampling-rate=32k-48k channels=3-6 audio-bit-rate=1-1440k

# AC-3 and E-AC-3. Half and quarter sampling rates have no profile, and neither has 7.1.
AC3   audio/ac3>audio/vnd.dolby.dd-raw  audio-codec=AC3 sampling-rate=32k,44.1k,48k channels=1-6 audio-bit-rate=64k-640k
EAC3  audio/eac3                        audio-codec=EAC3 sampling-rate=32k,44.1k,48k channels=1-6 audio-bit-rate=32k-6144k

# AMR. Its rate is that of the speech, by the type of its frames: the bytes of a file are more.
AMR_3GPP    audio/mp4,audio/3gpp  audio-codec=AMR sampling-rate=8k channels=1 audio-bit-rate=4.75k-12.2k
AMR_WBplus  audio/mp4,audio/3gpp  audio-codec=AMR-WB+ sampling-rate=8k-48k channels=1-2 audio-bit-rate=5.2k-48k

# Windows Media. A varying rate counts by its peak; where nothing is published of one, it is what plain samples take.
# Voice has no profile, and neither has lossless sound of more than 16 bits in two channels.
WMABASE       audio/x-ms-wma  audio-codec=WMA1,WMA2 sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-192999
WMAFULL       audio/x-ms-wma  audio-codec=WMA1,WMA2 sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-385k
WMAPRO        audio/x-ms-wma  audio-codec=WMA-Pro sampling-rate=8k-96k channels=1-8 audio-bit-rate=1-1500k
WMALSL        audio/x-ms-wma  audio-codec=WMA-lossless sampling-rate=8k-48k channels=1-2 bits-per-sample=16 audio-bit-rate=1-1536k
WMALSL_MULT5  audio/x-ms-wma  audio-codec=WMA-lossless sampling-rate=8k-48k channels=3-6 bits-per-sample=16,24 audio-bit-rate=1-6912k

# H.264 in MP4. A size is the largest, each side by itself, at its rate. Where nothing is published of the rate of the
# pictures, it is what the level can do at that size; where nothing is published of the audio, it is that of the next
# smaller form.

# H.264, baseline. What keeps the constraints of both (A.2.1.1) is a stream of the main and high profiles, too.
AVC_MP4_BL_CIF15_AAC_520    video/mp4  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-1.2 size=-352x288@1-15,-352x240@1-18,-320x240@1-20,-320x180@1-26,-240x180@1-30 video-bit-rate=1-384k bit-rate=1-520k audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-128k
AVC_MP4_BL_CIF15_AAC        video/mp4  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-1.2 size=-352x288@1-15,-352x240@1-18,-320x240@1-20,-320x180@1-26,-240x180@1-30 video-bit-rate=1-384k bit-rate=1-600k audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-200k
AVC_MP4_BL_L1B_QCIF15_HEAAC video/mp4  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-1 size=-176x144@1-15 video-bit-rate=1-128k bit-rate=1-256k audio-codec=HE-AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-128k
AVC_MP4_BL_L12_CIF15_HEAAC  video/mp4  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-1.2 size=-320x240@1-20,-320x180@1-26,-240x180@1-30 video-bit-rate=1-384k bit-rate=1-600k audio-codec=HE-AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-200k
AVC_MP4_BL_CIF15_HEAAC      video/mp4  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-1.2 size=-352x288@1-15,-352x240@1-18,-320x240@1-20,-320x180@1-26,-240x180@1-30 video-bit-rate=1-384k bit-rate=1-600k audio-codec=HE-AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-200k
AVC_MP4_BL_CIF15_AMR        video/mp4  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-1.2 size=-352x288@1-15,-352x240@1-18,-320x240@1-20,-320x180@1-26,-240x180@1-30 video-bit-rate=1-384k bit-rate=1-600k audio-codec=AMR sampling-rate=8k channels=1 audio-bit-rate=4.75k-12.2k
AVC_MP4_BL_CIF30_AAC_940    video/mp4  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-1.3 size=-352x288@1-30 video-bit-rate=1-768k bit-rate=1-940k audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-128k
AVC_MP4_BL_L2_CIF30_AAC     video/mp4  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-2 size=-352x288@1-30 video-bit-rate=1-1.3M bit-rate=1-1.3M audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-200k
AVC_MP4_BL_CIF30_AAC_MULT5  video/mp4  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-2 size=-352x288@1-30 video-bit-rate=1-2M bit-rate=1-3M audio-codec=AAC sampling-rate=8k-48k channels=1-6 audio-bit-rate=1-1440k
AVC_MP4_BL_CIF30_AC3        video/mp4  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-2 size=-352x288@1-30 video-bit-rate=1-2M bit-rate=1-3M audio-codec=AC3 sampling-rate=32k,44.1k,48k channels=1-6 audio-bit-rate=64k-640k
AVC_MP4_BL_CIF30_MPEG1_L3   video/mp4  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-2 size=-352x288@1-30 video-bit-rate=1-2M bit-rate=1-3M audio-codec=MP3 sampling-rate=32k,44.1k,48k channels=1-2 audio-bit-rate=32k-320k
AVC_MP4_BL_CIF30_HEAAC_L2   video/mp4  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-2 size=-352x288@1-30 video-bit-rate=1-2M bit-rate=1-3M audio-codec=HE-AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-576k
AVC_MP4_BL_L3_SD_AAC        video/mp4  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-3 size=-720x576@1-25,-720x480@1-29.97,-640x480@1-30 video-bit-rate=1-4M audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k
AVC_MP4_BL_L3L_SD_AAC       video/mp4  video-codec=H264 video-profile=ConstrainedBaseline video-level=1b-3 size=-720x576@1-25,-720x480@1-29.97,-640x480@1-30 video-bit-rate=1-4.5M bit-rate=1-5M audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k
AVC_MP4_BL_L3L_SD_HEAAC     video/mp4  video-codec=H264 video-profile=ConstrainedBaseline video-level=1b-3 size=-720x576@1-25,-720x480@1-29.97,-640x480@1-30 video-bit-rate=1-4.5M bit-rate=1-5M audio-codec=HE-AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k

# H.264, main. The i of 1080i is no condition: its limits are those of the size, whole pictures or fields.
AVC_MP4_MP_SD_AAC_MULT5     video/mp4  video-codec=H264 video-profile=ConstrainedBaseline,Main video-level=1b-3 size=-720x576@1-25,-720x480@1-30 video-bit-rate=1-10M audio-codec=AAC sampling-rate=8k-48k channels=1-6 audio-bit-rate=1-1440k
AVC_MP4_MP_SD_AC3           video/mp4  video-codec=H264 video-profile=ConstrainedBaseline,Main video-level=1b-3 size=-720x576@1-25,-720x480@1-30 video-bit-rate=1-10M audio-codec=AC3 sampling-rate=32k,44.1k,48k channels=1-6 audio-bit-rate=64k-640k
AVC_MP4_MP_SD_MPEG1_L3      video/mp4  video-codec=H264 video-profile=ConstrainedBaseline,Main video-level=1b-3 size=-720x576@1-25,-720x480@1-30 video-bit-rate=1-10M audio-codec=MP3 sampling-rate=32k,44.1k,48k channels=1-2 audio-bit-rate=32k-320k
AVC_MP4_MP_SD_EAC3          video/mp4  video-codec=H264 video-profile=ConstrainedBaseline,Main video-level=1b-3 size=-864x480@1-25,-720x576@1-25,-720x480@1-30 video-bit-rate=1-10M audio-codec=EAC3 sampling-rate=32k,44.1k,48k channels=1-6 audio-bit-rate=32k-3024k

# H.264, baseline again, where nothing smaller fits.
AVC_MP4_BL_L31_HD_AAC       video/mp4  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-3.1 size=-1280x720@1-30 video-bit-rate=1-14M bit-rate=1-15M audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k
AVC_MP4_BL_L32_HD_AAC       video/mp4  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-3.2 size=-1280x720@1-60 video-bit-rate=1-20M bit-rate=1-21M audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k

# H.264, main, in high definition.
AVC_MP4_MP_HD_720p_AAC      video/mp4  video-codec=H264 video-profile=ConstrainedBaseline,Main video-level=1b-3.1 size=-1280x720@1-30,-640x480@1-60 video-bit-rate=1-14M bit-rate=1-15M audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-576k
AVC_MP4_MP_HD_1080i_AAC     video/mp4  video-codec=H264 video-profile=ConstrainedBaseline,Main video-level=1b-4 size=-1920x1080@1-30,-1280x720@1-60 video-bit-rate=1-20M bit-rate=1-21M audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-576k

# H.264, high. Its decoders take main.
AVC_MP4_HP_HD_AAC           video/mp4  video-codec=H264 video-profile=ConstrainedBaseline,Main,High video-level=1b-4 size=-1280x720@1-60,-1920x1080@1-30 video-bit-rate=1-25M audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k
AVC_MP4_HP_HD_EAC3          video/mp4  video-codec=H264 video-profile=ConstrainedBaseline,Main,High video-level=1b-4 size=-1280x720@1-60,-1920x1080@1-30 video-bit-rate=1-25M audio-codec=EAC3 sampling-rate=32k,44.1k,48k channels=1-6 audio-bit-rate=32k-3024k

# H.264 in 3GPP.
AVC_3GPP_BL_QCIF15_AAC         video/3gpp  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-1 size=-176x144@1-15 video-bit-rate=1-128k bit-rate=1-256k audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-128k
AVC_3GPP_BL_QCIF15_AAC_LTP     video/3gpp  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-1 size=-176x144@1-15 video-bit-rate=1-128k bit-rate=1-256k audio-codec=AAC-LTP sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-128k
AVC_3GPP_BL_QCIF15_HEAAC       video/3gpp  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-1 size=-176x144@1-15 video-bit-rate=1-128k bit-rate=1-256k audio-codec=HE-AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-128k
AVC_3GPP_BL_QCIF15_AMR         video/3gpp  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-1 size=-176x144@1-15 video-bit-rate=1-128k bit-rate=1-256k audio-codec=AMR sampling-rate=8k channels=1 audio-bit-rate=4.75k-12.2k
AVC_3GPP_BL_QCIF15_AMR_WBplus  video/3gpp  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-1 size=-176x144@1-15 video-bit-rate=1-128k bit-rate=1-256k audio-codec=AMR-WB+ sampling-rate=8k-48k channels=1-2 audio-bit-rate=5.2k-48k
AVC_3GPP_BL_CIF15_AMR_WBplus   video/3gpp  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-1.2 size=-352x288@1-15,-352x240@1-18,-320x240@1-20,-320x180@1-26,-240x180@1-30 video-bit-rate=1-384k bit-rate=1-600k audio-codec=AMR-WB+ sampling-rate=8k-48k channels=1-2 audio-bit-rate=5.2k-48k
AVC_3GPP_BL_CIF30_AMR_WBplus   video/3gpp  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-2 size=-352x288@1-30 video-bit-rate=1-2M bit-rate=1-3M audio-codec=AMR-WB+ sampling-rate=8k-48k channels=1-2 audio-bit-rate=5.2k-48k

# H.264 in Matroska. Some renderers take no name of these, and some none but these: to announce none, comment them out.
AVC_MKV_MP_HD_AAC_MULT5  video/x-matroska  video-codec=H264 video-profile=ConstrainedBaseline,Main video-level=1b-4 size=-1920x1152@1-25,-1920x1080@1-30,-1280x720@1-60 video-bit-rate=1-20M audio-codec=AAC sampling-rate=8k-48k channels=1-6 audio-bit-rate=1-1440k
AVC_MKV_MP_HD_AC3        video/x-matroska  video-codec=H264 video-profile=ConstrainedBaseline,Main video-level=1b-4 size=-1920x1152@1-25,-1920x1080@1-30,-1280x720@1-60 video-bit-rate=1-20M audio-codec=AC3 sampling-rate=32k,44.1k,48k channels=1-6 audio-bit-rate=64k-640k
AVC_MKV_MP_HD_EAC3       video/x-matroska  video-codec=H264 video-profile=ConstrainedBaseline,Main video-level=1b-4 size=-1920x1152@1-25,-1920x1080@1-30,-1280x720@1-60 video-bit-rate=1-20M audio-codec=EAC3 sampling-rate=32k,44.1k,48k channels=1-6 audio-bit-rate=32k-3024k
AVC_MKV_MP_HD_HEAAC_L4   video/x-matroska  video-codec=H264 video-profile=ConstrainedBaseline,Main video-level=1b-4 size=-1920x1152@1-25,-1920x1080@1-30,-1280x720@1-60 video-bit-rate=1-20M audio-codec=HE-AAC sampling-rate=8k-48k channels=1-6 audio-bit-rate=1-1440k
AVC_MKV_MP_HD_MPEG1_L3   video/x-matroska  video-codec=H264 video-profile=ConstrainedBaseline,Main video-level=1b-4 size=-1920x1152@1-25,-1920x1080@1-30,-1280x720@1-60 video-bit-rate=1-20M audio-codec=MP3 sampling-rate=32k,44.1k,48k channels=1-2 audio-bit-rate=32k-320k
AVC_MKV_HP_HD_AAC_MULT5  video/x-matroska  video-codec=H264 video-profile=ConstrainedBaseline,Main,High video-level=1b-4 size=-1920x1152@1-25,-1920x1080@1-30,-1280x720@1-60 video-bit-rate=1-30M audio-codec=AAC sampling-rate=8k-48k channels=1-6 audio-bit-rate=1-1440k
AVC_MKV_HP_HD_AC3        video/x-matroska  video-codec=H264 video-profile=ConstrainedBaseline,Main,High video-level=1b-4 size=-1920x1152@1-25,-1920x1080@1-30,-1280x720@1-60 video-bit-rate=1-30M audio-codec=AC3 sampling-rate=32k,44.1k,48k channels=1-6 audio-bit-rate=64k-640k
AVC_MKV_HP_HD_EAC3       video/x-matroska  video-codec=H264 video-profile=ConstrainedBaseline,Main,High video-level=1b-4 size=-1920x1152@1-25,-1920x1080@1-30,-1280x720@1-60 video-bit-rate=1-35M audio-codec=EAC3 sampling-rate=32k,44.1k,48k channels=1-6 audio-bit-rate=32k-3024k
AVC_MKV_HP_HD_HEAAC_L4   video/x-matroska  video-codec=H264 video-profile=ConstrainedBaseline,Main,High video-level=1b-4 size=-1920x1152@1-25,-1920x1080@1-30,-1280x720@1-60 video-bit-rate=1-30M audio-codec=HE-AAC sampling-rate=8k-48k channels=1-6 audio-bit-rate=1-1440k
AVC_MKV_HP_HD_MPEG1_L3   video/x-matroska  video-codec=H264 video-profile=ConstrainedBaseline,Main,High video-level=1b-4 size=-1920x1152@1-25,-1920x1080@1-30,-1280x720@1-60 video-bit-rate=1-30M audio-codec=MP3 sampling-rate=32k,44.1k,48k channels=1-2 audio-bit-rate=32k-320k

# MPEG-4 part 2, simple.
MPEG4_P2_MP4_SP_L2_AAC      video/mp4   video-codec=MPEG4 video-profile=Simple video-level=0-2 size=-176x144@1-30,-352x288@1-15 video-bit-rate=1-128k audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-128k
MPEG4_P2_MP4_SP_L2_AMR      video/mp4   video-codec=MPEG4 video-profile=Simple video-level=0-2 size=-176x144@1-30,-352x288@1-15 video-bit-rate=1-128k audio-codec=AMR sampling-rate=8k channels=1 audio-bit-rate=4.75k-12.2k
MPEG4_P2_MP4_SP_AAC         video/mp4   video-codec=MPEG4 video-profile=Simple video-level=0,1 size=-352x288@1-30 video-bit-rate=1-64k bit-rate=1-600k audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-216k
MPEG4_P2_MP4_SP_AAC         video/mp4   video-codec=MPEG4 video-profile=Simple video-level=0b,2 size=-352x288@1-30 video-bit-rate=1-128k bit-rate=1-600k audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-216k
MPEG4_P2_MP4_SP_AAC         video/mp4   video-codec=MPEG4 video-profile=Simple video-level=3 size=-352x288@1-30 video-bit-rate=1-384k bit-rate=1-600k audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-216k
MPEG4_P2_MP4_SP_AAC_LTP     video/mp4   video-codec=MPEG4 video-profile=Simple video-level=0,1 size=-352x288@1-30 video-bit-rate=1-64k bit-rate=1-600k audio-codec=AAC-LTP sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-216k
MPEG4_P2_MP4_SP_AAC_LTP     video/mp4   video-codec=MPEG4 video-profile=Simple video-level=0b,2 size=-352x288@1-30 video-bit-rate=1-128k bit-rate=1-600k audio-codec=AAC-LTP sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-216k
MPEG4_P2_MP4_SP_AAC_LTP     video/mp4   video-codec=MPEG4 video-profile=Simple video-level=3 size=-352x288@1-30 video-bit-rate=1-384k bit-rate=1-600k audio-codec=AAC-LTP sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-216k
MPEG4_P2_MP4_SP_HEAAC       video/mp4   video-codec=MPEG4 video-profile=Simple video-level=0,1 size=-352x288@1-30 video-bit-rate=1-64k bit-rate=1-600k audio-codec=HE-AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-216k
MPEG4_P2_MP4_SP_HEAAC       video/mp4   video-codec=MPEG4 video-profile=Simple video-level=0b,2 size=-352x288@1-30 video-bit-rate=1-128k bit-rate=1-600k audio-codec=HE-AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-216k
MPEG4_P2_MP4_SP_HEAAC       video/mp4   video-codec=MPEG4 video-profile=Simple video-level=3 size=-352x288@1-30 video-bit-rate=1-384k bit-rate=1-600k audio-codec=HE-AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-216k
MPEG4_P2_MP4_SP_VGA_AAC     video/mp4   video-codec=MPEG4 video-profile=Simple video-level=0-3 size=-640x480@1-30 video-bit-rate=1-3M audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k
MPEG4_P2_MP4_SP_VGA_HEAAC   video/mp4   video-codec=MPEG4 video-profile=Simple video-level=0-3 size=-640x480@1-30 video-bit-rate=1-3M audio-codec=HE-AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k
MPEG4_P2_MP4_SP_L5_AAC      video/mp4   video-codec=MPEG4 video-profile=Simple video-level=0,1 size=-720x576@1-30 video-bit-rate=1-64k audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k
MPEG4_P2_MP4_SP_L5_AAC      video/mp4   video-codec=MPEG4 video-profile=Simple video-level=0b,2 size=-720x576@1-30 video-bit-rate=1-128k audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k
MPEG4_P2_MP4_SP_L5_AAC      video/mp4   video-codec=MPEG4 video-profile=Simple video-level=3 size=-720x576@1-30 video-bit-rate=1-384k audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k
MPEG4_P2_MP4_SP_L5_AAC      video/mp4   video-codec=MPEG4 video-profile=Simple video-level=5 size=-720x576@1-30 video-bit-rate=1-8M audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k
MPEG4_P2_MP4_SP_L6_AAC      video/mp4   video-codec=MPEG4 video-profile=Simple video-level=0,1 size=-1280x720@1-30 video-bit-rate=1-64k audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k
MPEG4_P2_MP4_SP_L6_AAC      video/mp4   video-codec=MPEG4 video-profile=Simple video-level=0b,2 size=-1280x720@1-30 video-bit-rate=1-128k audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k
MPEG4_P2_MP4_SP_L6_AAC      video/mp4   video-codec=MPEG4 video-profile=Simple video-level=3 size=-1280x720@1-30 video-bit-rate=1-384k audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k
MPEG4_P2_MP4_SP_L6_AAC      video/mp4   video-codec=MPEG4 video-profile=Simple video-level=4 size=-1280x720@1-30 video-bit-rate=1-4M audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k
MPEG4_P2_MP4_SP_L6_AAC      video/mp4   video-codec=MPEG4 video-profile=Simple video-level=5 size=-1280x720@1-30 video-bit-rate=1-8M audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k
MPEG4_P2_MP4_SP_L6_AAC      video/mp4   video-codec=MPEG4 video-profile=Simple video-level=6 size=-1280x720@1-30 video-bit-rate=1-12M audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k

# MPEG-4 part 2, advanced simple. Where nothing is published of the audio, it is that of the next smaller form. SO is
# simple objects alone: a stream of the simple profile, whatever its level limits, within what the name does.
MPEG4_P2_MP4_ASP_L4_SO_AAC          video/mp4   video-codec=MPEG4 video-profile=Simple video-level=0-4 size=-352x576@1-30 video-bit-rate=1-2M audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k
MPEG4_P2_MP4_ASP_L4_SO_HEAAC        video/mp4   video-codec=MPEG4 video-profile=Simple video-level=0-4 size=-352x576@1-30 video-bit-rate=1-2M audio-codec=HE-AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k
MPEG4_P2_MP4_ASP_L4_SO_HEAAC_MULT5  video/mp4   video-codec=MPEG4 video-profile=Simple video-level=0-4 size=-352x576@1-30 video-bit-rate=1-2M audio-codec=HE-AAC sampling-rate=8k-48k channels=1-6 audio-bit-rate=1-1440k
MPEG4_P2_MP4_ASP_L5_SO_AAC          video/mp4   video-codec=MPEG4 video-profile=Simple video-level=0-5 size=-720x576@1-30 video-bit-rate=1-8M audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k
MPEG4_P2_MP4_ASP_L5_SO_HEAAC        video/mp4   video-codec=MPEG4 video-profile=Simple video-level=0-5 size=-720x576@1-30 video-bit-rate=1-8M audio-codec=HE-AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k
MPEG4_P2_MP4_ASP_L5_SO_HEAAC_MULT5  video/mp4   video-codec=MPEG4 video-profile=Simple video-level=0-5 size=-720x576@1-30 video-bit-rate=1-8M audio-codec=HE-AAC sampling-rate=8k-48k channels=1-6 audio-bit-rate=1-1440k
MPEG4_P2_MP4_ASP_AAC                video/mp4   video-codec=MPEG4 video-profile=AdvancedSimple video-level=0-5 size=-720x576@1-30 video-bit-rate=1-8M audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k
MPEG4_P2_MP4_ASP_HEAAC              video/mp4   video-codec=MPEG4 video-profile=AdvancedSimple video-level=0-5 size=-720x576@1-30 video-bit-rate=1-8M audio-codec=HE-AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-256k
MPEG4_P2_MP4_ASP_HEAAC_MULT5        video/mp4   video-codec=MPEG4 video-profile=AdvancedSimple video-level=0-5 size=-720x576@1-30 video-bit-rate=1-8M audio-codec=HE-AAC sampling-rate=8k-48k channels=1-6 audio-bit-rate=1-1440k

# MPEG-4 part 2 in 3GPP, and in ASF, whose rate of G.726 is one of four.
MPEG4_P2_3GPP_SP_L0B_AAC    video/3gpp  video-codec=MPEG4 video-profile=Simple video-level=0,0b size=-176x144@1-15 video-bit-rate=1-128k audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-128k
MPEG4_P2_3GPP_SP_L0B_AMR    video/3gpp  video-codec=MPEG4 video-profile=Simple video-level=0,0b size=-176x144@1-15 video-bit-rate=1-128k audio-codec=AMR sampling-rate=8k channels=1 audio-bit-rate=4.75k-12.2k
MPEG4_P2_ASF_SP_G726        video/x-ms-wmv>video/x-ms-asf  video-codec=MPEG4 video-profile=Simple video-level=0,1 size=-352x288@1-30 video-bit-rate=1-64k audio-codec=G726 sampling-rate=8k channels=1 audio-bit-rate=32k
MPEG4_P2_ASF_SP_G726        video/x-ms-wmv>video/x-ms-asf  video-codec=MPEG4 video-profile=Simple video-level=0b,2 size=-352x288@1-30 video-bit-rate=1-128k audio-codec=G726 sampling-rate=8k channels=1 audio-bit-rate=32k
MPEG4_P2_ASF_SP_G726        video/x-ms-wmv>video/x-ms-asf  video-codec=MPEG4 video-profile=Simple video-level=3 size=-352x288@1-30 video-bit-rate=1-384k audio-codec=G726 sampling-rate=8k channels=1 audio-bit-rate=32k
MPEG4_P2_ASF_ASP_L4_SO_G726 video/x-ms-wmv>video/x-ms-asf  video-codec=MPEG4 video-profile=Simple video-level=0-4 size=-352x576@1-30 video-bit-rate=1-2M audio-codec=G726 sampling-rate=8k channels=1 audio-bit-rate=32k
MPEG4_P2_ASF_ASP_L5_SO_G726 video/x-ms-wmv>video/x-ms-asf  video-codec=MPEG4 video-profile=Simple video-level=0-5 size=-720x576@1-30 video-bit-rate=1-8M audio-codec=G726 sampling-rate=8k channels=1 audio-bit-rate=32k

# H.263. A record holds ten times a level; what H.263 names level 10 is written 1, therefore.
MPEG4_H263_MP4_P0_L10_AAC          video/3gpp  video-codec=H263 video-profile=0 video-level=1 size=-176x144@1-15 video-bit-rate=1-64k bit-rate=1-150k audio-codec=AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-86k
MPEG4_H263_MP4_P0_L10_AAC_LTP      video/3gpp  video-codec=H263 video-profile=0 video-level=1 size=-176x144@1-15 video-bit-rate=1-64k bit-rate=1-150k audio-codec=AAC-LTP sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-86k
MPEG4_H263_3GPP_P0_L10_AMR_WBplus  video/3gpp  video-codec=H263 video-profile=0 video-level=1 size=-176x144@1-15 video-bit-rate=1-64k bit-rate=1-150k audio-codec=AMR-WB+ sampling-rate=8k-48k channels=1-2 audio-bit-rate=5.2k-48k
MPEG4_H263_3GPP_P3_L10_AMR         video/3gpp  video-codec=H263 video-profile=3 video-level=1 size=-176x144@1-15 video-bit-rate=1-64k bit-rate=1-150k audio-codec=AMR sampling-rate=8k channels=1 audio-bit-rate=4.75k-12.2k

# Windows Media Video 9. An ASF file does not store the level: size, rates and bits are those of the level that the name
# has. Simple is a stream of main, too. Versions 7 and 8 have no name.
WMVSPLL_BASE video/x-ms-wmv  video-codec=WMV3 video-profile=Simple size=-176x144@1-15 video-bit-rate=1-96k audio-codec=WMA1,WMA2 sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-192999
WMVSPML_BASE video/x-ms-wmv  video-codec=WMV3 video-profile=Simple size=-240x176@1-30,-352x288@1-15 video-bit-rate=1-384k audio-codec=WMA1,WMA2 sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-192999
WMVSPML_MP3  video/x-ms-wmv  video-codec=WMV3 video-profile=Simple size=-240x176@1-30,-352x288@1-15 video-bit-rate=1-384k audio-codec=MP3 sampling-rate=32k,44.1k,48k channels=1-2 audio-bit-rate=32k-320k
WMVMED_BASE  video/x-ms-wmv  video-codec=WMV3 video-profile=Simple,Main size=-720x576@1-25,-720x480@1-30 video-bit-rate=1-10M audio-codec=WMA1,WMA2 sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-192999
WMVMED_FULL  video/x-ms-wmv  video-codec=WMV3 video-profile=Simple,Main size=-720x576@1-25,-720x480@1-30 video-bit-rate=1-10M audio-codec=WMA1,WMA2 sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-385k
WMVMED_PRO   video/x-ms-wmv  video-codec=WMV3 video-profile=Simple,Main size=-720x576@1-25,-720x480@1-30 video-bit-rate=1-10M audio-codec=WMA-Pro sampling-rate=8k-96k channels=1-8 audio-bit-rate=1-1500k
WMVHIGH_FULL video/x-ms-wmv  video-codec=WMV3 video-profile=Simple,Main size=-1920x1080@1-30 video-bit-rate=1-20M audio-codec=WMA1,WMA2 sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-385k
WMVHIGH_PRO  video/x-ms-wmv  video-codec=WMV3 video-profile=Simple,Main size=-1920x1080@1-30 video-bit-rate=1-20M audio-codec=WMA-Pro sampling-rate=8k-96k channels=1-8 audio-bit-rate=1-1500k

# VC-1, advanced. No source says which sound "WMA" is: it is that of WMAFULL, and of WMAPRO by inference.
VC1_ASF_AP_L1_WMA  video/x-ms-wmv>video/x-ms-asf  video-codec=VC1 video-profile=Advanced video-level=0-1 size=-720x576@1-25,-720x480@1-30 video-bit-rate=1-10M audio-codec=WMA1,WMA2 sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-385k
VC1_ASF_AP_L2_WMA  video/x-ms-wmv>video/x-ms-asf  video-codec=VC1 video-profile=Advanced video-level=0-2 size=-1280x720@1-30,-720x480@1-60 video-bit-rate=1-20M audio-codec=WMA1,WMA2 sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-385k
VC1_ASF_AP_L1_WMA  video/x-ms-wmv>video/x-ms-asf  video-codec=VC1 video-profile=Advanced video-level=0-1 size=-720x576@1-25,-720x480@1-30 video-bit-rate=1-10M audio-codec=WMA-Pro sampling-rate=8k-96k channels=1-8 audio-bit-rate=1-1500k inferred
VC1_ASF_AP_L2_WMA  video/x-ms-wmv>video/x-ms-asf  video-codec=VC1 video-profile=Advanced video-level=0-2 size=-1280x720@1-30,-720x480@1-60 video-bit-rate=1-20M audio-codec=WMA-Pro sampling-rate=8k-96k channels=1-8 audio-bit-rate=1-1500k inferred

# MPEG-1 system streams and MPEG-2 program streams. The rate of MPEG-2 is that of its sequence header: a film with 3:2
# pulldown has 29.97. The shape of pixels is not asked for: what plays these sizes plays them in either.
MPEG1              video/mpeg  container=MPEG1 video-codec=MPEG1 size=352x288@25,352x240@29.97,352x240@23.976 video-bit-rate=1150000-1151929 audio-codec=MP2 sampling-rate=44.1k channels=2 audio-bit-rate=224k
MPEG_PS_PAL        video/mpeg  container=PS video-codec=MPEG2 video-profile=Simple,Main video-level=Low-Main size=720x576@25,704x576@25,544x576@25,480x576@25,352x576@25,352x288@25 video-bit-rate=1-9.8M audio-codec=AC3 sampling-rate=48k channels=1-6 audio-bit-rate=1-448k
MPEG_PS_PAL        video/mpeg  container=PS video-codec=MPEG2 video-profile=Simple,Main video-level=Low-Main size=720x576@25,704x576@25,544x576@25,480x576@25,352x576@25,352x288@25 video-bit-rate=1-9.8M audio-codec=MP2 sampling-rate=48k channels=1 audio-bit-rate=64k-192k
MPEG_PS_PAL        video/mpeg  container=PS video-codec=MPEG2 video-profile=Simple,Main video-level=Low-Main size=720x576@25,704x576@25,544x576@25,480x576@25,352x576@25,352x288@25 video-bit-rate=1-9.8M audio-codec=MP2 sampling-rate=48k channels=2 audio-bit-rate=64k-384k
MPEG_PS_PAL        video/mpeg  container=PS video-codec=MPEG2 video-profile=Simple,Main video-level=Low-Main size=720x576@25,704x576@25,544x576@25,480x576@25,352x576@25,352x288@25 video-bit-rate=1-9.8M audio-codec=LPCM sampling-rate=48k channels=1-2 bits-per-sample=16
MPEG_PS_PAL_XAC3   video/mpeg  container=PS video-codec=MPEG2 video-profile=Simple,Main video-level=Low-Main size=720x576@25,704x576@25,544x576@25,480x576@25,352x576@25,352x288@25 video-bit-rate=1-9.8M audio-codec=AC3 sampling-rate=48k channels=1-6 audio-bit-rate=448001-640k
MPEG_PS_NTSC       video/mpeg  container=PS video-codec=MPEG2 video-profile=Simple,Main video-level=Low-Main size=720x480@29.97,704x480@29.97,544x480@29.97,480x480@29.97,352x480@29.97,352x240@29.97 video-bit-rate=1-9.8M audio-codec=AC3 sampling-rate=48k channels=1-6 audio-bit-rate=1-448k
MPEG_PS_NTSC       video/mpeg  container=PS video-codec=MPEG2 video-profile=Simple,Main video-level=Low-Main size=720x480@29.97,704x480@29.97,544x480@29.97,480x480@29.97,352x480@29.97,352x240@29.97 video-bit-rate=1-9.8M audio-codec=MP2 sampling-rate=48k channels=1 audio-bit-rate=64k-192k
MPEG_PS_NTSC       video/mpeg  container=PS video-codec=MPEG2 video-profile=Simple,Main video-level=Low-Main size=720x480@29.97,704x480@29.97,544x480@29.97,480x480@29.97,352x480@29.97,352x240@29.97 video-bit-rate=1-9.8M audio-codec=MP2 sampling-rate=48k channels=2 audio-bit-rate=64k-384k
MPEG_PS_NTSC       video/mpeg  container=PS video-codec=MPEG2 video-profile=Simple,Main video-level=Low-Main size=720x480@29.97,704x480@29.97,544x480@29.97,480x480@29.97,352x480@29.97,352x240@29.97 video-bit-rate=1-9.8M audio-codec=LPCM sampling-rate=48k channels=1-2 bits-per-sample=16
MPEG_PS_NTSC_XAC3  video/mpeg  container=PS video-codec=MPEG2 video-profile=Simple,Main video-level=Low-Main size=720x480@29.97,704x480@29.97,544x480@29.97,480x480@29.97,352x480@29.97,352x240@29.97 video-bit-rate=1-9.8M audio-codec=AC3 sampling-rate=48k channels=1-6 audio-bit-rate=448001-640k

# Transport streams. The end of a profile's name tells the packets: of 188 bytes, of 192 with all stamps zero, of 192
# with stamps. Those of 204 bytes, what is scrambled, and what holds several programs state no such container.
ending  +_ISO  video/mp2t>video/mpeg    container=TS
ending  +      video/vnd.dlna.mpeg-tts  container=TTS-zero
ending  +_T    video/vnd.dlna.mpeg-tts  container=TTS

# MPEG-2 in transport streams. MPEG_TS_SD_EU has no 704x576. What Korea names, North America does, too: the names of
# Korea are given where it is preferred.
MPEG_TS_SD_EU_AC3       +_ISO,+_T    video-codec=MPEG2 video-profile=Main video-level=Low-Main size=720x576@25,544x576@25,480x576@25,352x576@25,352x288@25 video-bit-rate=1-15M audio-codec=AC3 sampling-rate=32k,44.1k,48k channels=1-6 audio-bit-rate=1-448k region=EU inferred
MPEG_TS_SD_EU           +_ISO,+,+_T  video-codec=MPEG2 video-profile=Simple,Main video-level=Low-Main size=720x576@25,544x576@25,480x576@25,352x576@25,352x288@25 video-bit-rate=1-15M audio-codec=AC3 sampling-rate=32k,44.1k,48k channels=1-6 audio-bit-rate=1-448k region=EU
MPEG_TS_SD_EU           +_ISO,+,+_T  video-codec=MPEG2 video-profile=Simple,Main video-level=Low-Main size=720x576@25,544x576@25,480x576@25,352x576@25,352x288@25 video-bit-rate=1-15M audio-codec=MP2 sampling-rate=32k,44.1k,48k channels=1-2 audio-bit-rate=1-384k region=EU
MPEG_TS_SD_EU           +_ISO,+,+_T  video-codec=MPEG2 video-profile=Simple,Main video-level=Low-Main size=720x576@25,544x576@25,480x576@25,352x576@25,352x288@25 video-bit-rate=1-15M audio-codec=MP1 sampling-rate=32k,44.1k,48k channels=1-2 audio-bit-rate=1-448k region=EU
MPEG_TS_SD_NA           +_ISO,+,+_T  video-codec=MPEG2 video-profile=Simple,Main video-level=Low-Main size=720x480@29.97,544x480@29.97,480x480@29.97,352x480@29.97,704x480@29.97-30,640x480@29.97-30 bit-rate=1-19392700 audio-codec=AC3 sampling-rate=48k channels=1-6 audio-bit-rate=1-448k region=NA
MPEG_TS_SD_NA           +_ISO,+,+_T  video-codec=MPEG2 video-profile=Simple,Main video-level=Low-Main process=progressive size=704x480@23.976-24,640x480@23.976-24 bit-rate=1-19392700 audio-codec=AC3 sampling-rate=48k channels=1-6 audio-bit-rate=1-448k region=NA
MPEG_TS_SD_NA           +_ISO,+,+_T  video-codec=MPEG2 video-profile=Simple,Main video-level=Low-High process=progressive size=704x480@59.94-60,640x480@59.94-60 bit-rate=1-19392700 audio-codec=AC3 sampling-rate=48k channels=1-6 audio-bit-rate=1-448k region=NA
MPEG_TS_HD_NA           +_ISO,+,+_T  video-codec=MPEG2 video-profile=Simple,Main video-level=Main-High size=1920x1080@29.97-30,1440x1080@29.97-30,1280x1080@29.97-30,1280x720@29.97-30 bit-rate=1-19392700 audio-codec=AC3 sampling-rate=48k channels=1-6 audio-bit-rate=1-448k region=NA
MPEG_TS_HD_NA           +_ISO,+,+_T  video-codec=MPEG2 video-profile=Simple,Main video-level=Main-High process=progressive size=1920x1080@23.976-24,1440x1080@23.976-24,1280x1080@23.976-24,1280x720@23.976-24 bit-rate=1-19392700 audio-codec=AC3 sampling-rate=48k channels=1-6 audio-bit-rate=1-448k region=NA
MPEG_TS_HD_NA           +_ISO,+,+_T  video-codec=MPEG2 video-profile=Simple,Main video-level=Main-High process=progressive size=1280x720@59.94-60 bit-rate=1-19392700 audio-codec=AC3 sampling-rate=48k channels=1-6 audio-bit-rate=1-448k region=NA inferred
MPEG_TS_SD_NA_XAC3      +_ISO,+,+_T  video-codec=MPEG2 video-profile=Simple,Main video-level=Low-Main size=720x480@29.97,544x480@29.97,480x480@29.97,352x480@29.97,704x480@29.97-30,640x480@29.97-30 bit-rate=1-19392700 audio-codec=AC3 sampling-rate=48k channels=1-6 audio-bit-rate=448001-640k region=NA
MPEG_TS_SD_NA_XAC3      +_ISO,+,+_T  video-codec=MPEG2 video-profile=Simple,Main video-level=Low-Main process=progressive size=704x480@23.976-24,640x480@23.976-24 bit-rate=1-19392700 audio-codec=AC3 sampling-rate=48k channels=1-6 audio-bit-rate=448001-640k region=NA
MPEG_TS_SD_NA_XAC3      +_ISO,+,+_T  video-codec=MPEG2 video-profile=Simple,Main video-level=Low-High process=progressive size=704x480@59.94-60,640x480@59.94-60 bit-rate=1-19392700 audio-codec=AC3 sampling-rate=48k channels=1-6 audio-bit-rate=448001-640k region=NA
MPEG_TS_HD_NA_XAC3      +_ISO,+,+_T  video-codec=MPEG2 video-profile=Simple,Main video-level=Main-High size=1920x1080@29.97-30,1440x1080@29.97-30,1280x1080@29.97-30,1280x720@29.97-30 bit-rate=1-19392700 audio-codec=AC3 sampling-rate=48k channels=1-6 audio-bit-rate=448001-640k region=NA
MPEG_TS_HD_NA_XAC3      +_ISO,+,+_T  video-codec=MPEG2 video-profile=Simple,Main video-level=Main-High process=progressive size=1920x1080@23.976-24,1440x1080@23.976-24,1280x1080@23.976-24,1280x720@23.976-24 bit-rate=1-19392700 audio-codec=AC3 sampling-rate=48k channels=1-6 audio-bit-rate=448001-640k region=NA
MPEG_TS_HD_NA_XAC3      +_ISO,+,+_T  video-codec=MPEG2 video-profile=Simple,Main video-level=Main-High process=progressive size=1280x720@59.94-60 bit-rate=1-19392700 audio-codec=AC3 sampling-rate=48k channels=1-6 audio-bit-rate=448001-640k region=NA inferred
MPEG_TS_SD_KO           +_ISO,+,+_T  video-codec=MPEG2 video-profile=Simple,Main video-level=Low-Main size=704x480@29.97-30,640x480@29.97-30 bit-rate=1-19392700 audio-codec=AC3 sampling-rate=48k channels=1-6 audio-bit-rate=1-448k region=KO
MPEG_TS_SD_KO           +_ISO,+,+_T  video-codec=MPEG2 video-profile=Simple,Main video-level=Low-Main process=progressive size=704x480@23.976-24,640x480@23.976-24 bit-rate=1-19392700 audio-codec=AC3 sampling-rate=48k channels=1-6 audio-bit-rate=1-448k region=KO
MPEG_TS_SD_KO           +_ISO,+,+_T  video-codec=MPEG2 video-profile=Simple,Main video-level=Low-High process=progressive size=704x480@59.94-60,640x480@59.94-60 bit-rate=1-19392700 audio-codec=AC3 sampling-rate=48k channels=1-6 audio-bit-rate=1-448k region=KO
MPEG_TS_HD_KO           +_ISO,+,+_T  video-codec=MPEG2 video-profile=Simple,Main video-level=Main-High size=1920x1080@29.97-30,1440x1080@29.97-30,1280x1080@29.97-30,1280x720@29.97-30 bit-rate=1-19392700 audio-codec=AC3 sampling-rate=48k channels=1-6 audio-bit-rate=1-448k region=KO inferred
MPEG_TS_HD_KO           +_ISO,+,+_T  video-codec=MPEG2 video-profile=Simple,Main video-level=Main-High process=progressive size=1920x1080@23.976-24,1440x1080@23.976-24,1280x1080@23.976-24,1280x720@23.976-24 bit-rate=1-19392700 audio-codec=AC3 sampling-rate=48k channels=1-6 audio-bit-rate=1-448k region=KO inferred
MPEG_TS_HD_KO           +_ISO,+,+_T  video-codec=MPEG2 video-profile=Simple,Main video-level=Main-High process=progressive size=1280x720@59.94-60 bit-rate=1-19392700 audio-codec=AC3 sampling-rate=48k channels=1-6 audio-bit-rate=1-448k region=KO inferred
MPEG_TS_SD_KO_XAC3      +_ISO,+,+_T  video-codec=MPEG2 video-profile=Simple,Main video-level=Low-Main size=704x480@29.97-30,640x480@29.97-30 bit-rate=1-19392700 audio-codec=AC3 sampling-rate=48k channels=1-6 audio-bit-rate=448001-640k region=KO inferred
MPEG_TS_SD_KO_XAC3      +_ISO,+,+_T  video-codec=MPEG2 video-profile=Simple,Main video-level=Low-Main process=progressive size=704x480@23.976-24,640x480@23.976-24 bit-rate=1-19392700 audio-codec=AC3 sampling-rate=48k channels=1-6 audio-bit-rate=448001-640k region=KO inferred
MPEG_TS_SD_KO_XAC3      +_ISO,+,+_T  video-codec=MPEG2 video-profile=Simple,Main video-level=Low-High process=progressive size=704x480@59.94-60,640x480@59.94-60 bit-rate=1-19392700 audio-codec=AC3 sampling-rate=48k channels=1-6 audio-bit-rate=448001-640k region=KO inferred
MPEG_TS_HD_KO_XAC3      +_ISO,+,+_T  video-codec=MPEG2 video-profile=Simple,Main video-level=Main-High size=1920x1080@29.97-30,1440x1080@29.97-30,1280x1080@29.97-30,1280x720@29.97-30 bit-rate=1-19392700 audio-codec=AC3 sampling-rate=48k channels=1-6 audio-bit-rate=448001-640k region=KO inferred
MPEG_TS_HD_KO_XAC3      +_ISO,+,+_T  video-codec=MPEG2 video-profile=Simple,Main video-level=Main-High process=progressive size=1920x1080@23.976-24,1440x1080@23.976-24,1280x1080@23.976-24,1280x720@23.976-24 bit-rate=1-19392700 audio-codec=AC3 sampling-rate=48k channels=1-6 audio-bit-rate=448001-640k region=KO inferred
MPEG_TS_HD_KO_XAC3      +_ISO,+,+_T  video-codec=MPEG2 video-profile=Simple,Main video-level=Main-High process=progressive size=1280x720@59.94-60 bit-rate=1-19392700 audio-codec=AC3 sampling-rate=48k channels=1-6 audio-bit-rate=448001-640k region=KO inferred
MPEG_TS_NA              +_ISO        video-codec=MPEG2 video-profile=Simple,Main video-level=Low-High size=1920x1080,1440x1080,1280x720,720x480,704x480,640x480,544x480,528x480,480x480,352x480 frame-rate=23.976-24,29.97-30,59.94-60 bit-rate=1-38810700 audio-codec=AC3 sampling-rate=48k channels=1-6 audio-bit-rate=1-640k region=NA inferred
MPEG_TS_JP              +_T          video-codec=MPEG2 video-profile=Main video-level=Main-High size=1920x1080@29.97,1440x1080@29.97,720x480@29.97 video-bit-rate=1-24M audio-codec=AAC sampling-rate=48k channels=1-6 audio-bit-rate=1-1440k region=JP inferred
MPEG_TS_JP              +_T          video-codec=MPEG2 video-profile=Main video-level=Main-High process=progressive size=1280x720@59.94,720x480@59.94 video-bit-rate=1-24M audio-codec=AAC sampling-rate=48k channels=1-6 audio-bit-rate=1-1440k region=JP inferred
MPEG_TS_SD_JP_MPEG1_L2  +_T          video-codec=MPEG2 video-profile=Simple,Main video-level=Low-Main size=720x480@29.97,544x480@29.97,480x480@29.97,352x480@29.97 video-bit-rate=1-15M audio-codec=MP2 sampling-rate=32k,44.1k,48k channels=1-2 audio-bit-rate=1-384k region=JP inferred
MPEG_TS_MP_LL_AAC       +_ISO,+,+_T  video-codec=MPEG2 video-profile=Main video-level=Low size=-352x288@1-30 video-bit-rate=1-4M audio-codec=AAC sampling-rate=32k-48k channels=1-2 audio-bit-rate=1-256k
MPEG_TS_SD_50_AC3       +_T          video-codec=MPEG2 video-profile=Simple,Main video-level=Low-Main size=720x576@25,704x576@25,544x576@25,480x576@25,352x576@25,352x288@25 video-bit-rate=1-15M audio-codec=AC3 sampling-rate=48k channels=1-6 audio-bit-rate=1-448k inferred
MPEG_TS_SD_50_L2        +_T          video-codec=MPEG2 video-profile=Simple,Main video-level=Low-Main size=720x576@25,704x576@25,544x576@25,480x576@25,352x576@25,352x288@25 video-bit-rate=1-15M audio-codec=MP2 sampling-rate=48k channels=1-2 audio-bit-rate=1-384k inferred
MPEG_TS_SD_60_AC3       +_T          video-codec=MPEG2 video-profile=Simple,Main video-level=Low-Main size=720x480@29.97,704x480@29.97,544x480@29.97,480x480@29.97,352x480@29.97,352x240@29.97 video-bit-rate=1-15M audio-codec=AC3 sampling-rate=48k channels=1-6 audio-bit-rate=1-448k inferred
MPEG_TS_SD_60_L2        +_T          video-codec=MPEG2 video-profile=Simple,Main video-level=Low-Main size=720x480@29.97,704x480@29.97,544x480@29.97,480x480@29.97,352x480@29.97,352x240@29.97 video-bit-rate=1-15M audio-codec=MP2 sampling-rate=48k channels=1-2 audio-bit-rate=1-384k inferred
MPEG_TS_HD_50_L2        +_ISO,+_T    video-codec=MPEG2 video-profile=Main video-level=Main-High process=interlaced size=1440x1080@25 video-bit-rate=1-80M audio-codec=MP2 sampling-rate=48k channels=1-2 audio-bit-rate=1-384k inferred
MPEG_TS_HD_50_L2        +_ISO,+_T    video-codec=MPEG2 video-profile=Main video-level=Main-High process=progressive size=1280x720@25,1280x720@50 video-bit-rate=1-80M audio-codec=MP2 sampling-rate=48k channels=1-2 audio-bit-rate=1-384k inferred
MPEG_TS_HD_60_L2        +_ISO,+_T    video-codec=MPEG2 video-profile=Main video-level=Main-High process=interlaced size=1440x1080@29.97 video-bit-rate=1-80M audio-codec=MP2 sampling-rate=48k channels=1-2 audio-bit-rate=1-384k inferred
MPEG_TS_HD_60_L2        +_ISO,+_T    video-codec=MPEG2 video-profile=Main video-level=Main-High process=progressive size=1280x720@29.97,1280x720@59.94 video-bit-rate=1-80M audio-codec=MP2 sampling-rate=48k channels=1-2 audio-bit-rate=1-384k inferred

# H.264 in transport streams. AAC of up to 24 kHz is told by the core alone, as in ADTS frames. The names of camcorders,
# which have one size, rate and kind of picture each, stand before those of main and high, which hold all up to one.
AVC_TS_BL_CIF15_AAC_540    +_ISO,+,+_T  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-1.2 size=-352x288@1-15,-352x240@1-18,-320x240@1-20,-320x180@1-26,-240x180@1-30 video-bit-rate=1-384k bit-rate=1-540k audio-codec=AAC sampling-rate=32k-48k channels=1-2 audio-bit-rate=1-128k
AVC_TS_BL_CIF15_AAC        +_ISO,+,+_T  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-1.2 size=-352x288@1-15,-352x240@1-18,-320x240@1-20,-320x180@1-26,-240x180@1-30 video-bit-rate=1-384k bit-rate=1-600k audio-codec=AAC sampling-rate=32k-48k channels=1-2 audio-bit-rate=1-200k
AVC_TS_BL_CIF15_AAC_LTP    +_ISO,+,+_T  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-1.2 size=-352x288@1-15,-352x240@1-18,-320x240@1-20,-320x180@1-26,-240x180@1-30 video-bit-rate=1-384k bit-rate=1-600k audio-codec=AAC-LTP sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-200k
AVC_TS_BL_CIF30_AAC_940    +_ISO,+,+_T  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-1.3 size=-352x288@1-30 video-bit-rate=1-768k bit-rate=1-940k audio-codec=AAC sampling-rate=32k-48k channels=1-2 audio-bit-rate=1-128k
AVC_TS_BL_CIF30_AAC_MULT5  +_ISO,+,+_T  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-2 size=-352x288@1-30 video-bit-rate=1-2M bit-rate=1-3M audio-codec=AAC sampling-rate=32k-48k channels=1-6 audio-bit-rate=1-1440k
AVC_TS_BL_CIF30_AC3        +_ISO,+,+_T  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-2 size=-352x288@1-30 video-bit-rate=1-2M bit-rate=1-3M audio-codec=AC3 sampling-rate=32k,44.1k,48k channels=1-6 audio-bit-rate=64k-640k
AVC_TS_BL_CIF30_MPEG1_L3   +_ISO,+,+_T  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-2 size=-352x288@1-30 video-bit-rate=1-2M bit-rate=1-3M audio-codec=MP3 sampling-rate=32k,44.1k,48k channels=1-2 audio-bit-rate=32k-320k
AVC_TS_BL_CIF30_HEAAC_L2   +_ISO,+,+_T  video-codec=H264 video-profile=Baseline,ConstrainedBaseline video-level=1b-2 size=-352x288@1-30 video-bit-rate=1-2M bit-rate=1-3M audio-codec=HE-AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-576k
AVC_TS_MP_SD_AAC_MULT5     +_ISO,+,+_T  video-codec=H264 video-profile=ConstrainedBaseline,Main video-level=1b-3 size=-720x576@1-25,-720x480@1-30 video-bit-rate=1-10M audio-codec=AAC sampling-rate=32k-48k channels=1-6 audio-bit-rate=1-1440k
AVC_TS_MP_SD_AC3           +_ISO,+,+_T  video-codec=H264 video-profile=ConstrainedBaseline,Main video-level=1b-3 size=-720x576@1-25,-720x480@1-30 video-bit-rate=1-10M audio-codec=AC3 sampling-rate=32k,44.1k,48k channels=1-6 audio-bit-rate=64k-640k
AVC_TS_MP_SD_MPEG1_L3      +_ISO,+,+_T  video-codec=H264 video-profile=ConstrainedBaseline,Main video-level=1b-3 size=-720x576@1-25,-720x480@1-30 video-bit-rate=1-10M audio-codec=MP3 sampling-rate=32k,44.1k,48k channels=1-2 audio-bit-rate=32k-320k
AVC_TS_MP_SD_HEAAC_L2      +_ISO,+,+_T  video-codec=H264 video-profile=ConstrainedBaseline,Main video-level=1b-3 size=-720x576@1-25,-720x480@1-30 video-bit-rate=1-10M audio-codec=HE-AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-576k
AVC_TS_MP_SD_AAC_LTP       +_ISO,+,+_T  video-codec=H264 video-profile=ConstrainedBaseline,Main video-level=1b-3 size=-720x576@1-25,-720x480@1-30 video-bit-rate=1-10M audio-codec=AAC-LTP sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-576k
AVC_TS_MP_SD_AAC_LTP_MULT5 +_ISO,+,+_T  video-codec=H264 video-profile=ConstrainedBaseline,Main video-level=1b-3 size=-720x576@1-25,-720x480@1-30 video-bit-rate=1-10M audio-codec=AAC-LTP sampling-rate=8k-96k channels=3-6 audio-bit-rate=1-2880k
AVC_TS_MP_SD_AAC_LTP_MULT7 +_ISO,+,+_T  video-codec=H264 video-profile=ConstrainedBaseline,Main video-level=1b-3 size=-720x576@1-25,-720x480@1-30 video-bit-rate=1-10M audio-codec=AAC-LTP sampling-rate=8k-96k channels=7-8 audio-bit-rate=1-4032k
AVC_TS_HD_50_AC3           +_ISO,+,+_T  video-codec=H264 video-profile=Main,High video-level=1b-4 process=interlaced size=1920x1080@25,1440x1080@25,720x576@25 bit-rate=1-24M audio-codec=AC3 sampling-rate=48k channels=1-6 audio-bit-rate=64k-640k 
AVC_TS_HD_50_AC3           +_ISO,+,+_T  video-codec=H264 video-profile=Main,High video-level=1b-4 process=progressive size=1280x720@50 bit-rate=1-24M audio-codec=AC3 sampling-rate=48k channels=1-6 audio-bit-rate=64k-640k 
AVC_TS_HD_50_LPCM          +_T          video-codec=H264 video-profile=Main,High video-level=1b-4 process=interlaced size=1920x1080@25,1440x1080@25,720x576@25 bit-rate=1-24M audio-codec=LPCM sampling-rate=48k channels=1-2 bits-per-sample=16 
AVC_TS_HD_50_LPCM          +_T          video-codec=H264 video-profile=Main,High video-level=1b-4 process=progressive size=1280x720@50 bit-rate=1-24M audio-codec=LPCM sampling-rate=48k channels=1-2 bits-per-sample=16 
AVC_TS_HD_60_AC3           +_ISO,+,+_T  video-codec=H264 video-profile=Main,High video-level=1b-4 process=interlaced size=1920x1080@29.97,1440x1080@29.97,720x480@29.97 bit-rate=1-24M audio-codec=AC3 sampling-rate=48k channels=1-6 audio-bit-rate=64k-640k 
AVC_TS_HD_60_AC3           +_ISO,+,+_T  video-codec=H264 video-profile=Main,High video-level=1b-4 process=progressive size=1280x720@59.94 bit-rate=1-24M audio-codec=AC3 sampling-rate=48k channels=1-6 audio-bit-rate=64k-640k 
AVC_TS_HD_60_LPCM          +_T          video-codec=H264 video-profile=Main,High video-level=1b-4 process=interlaced size=1920x1080@29.97,1440x1080@29.97,720x480@29.97 bit-rate=1-24M audio-codec=LPCM sampling-rate=48k channels=1-2 bits-per-sample=16 
AVC_TS_HD_60_LPCM          +_T          video-codec=H264 video-profile=Main,High video-level=1b-4 process=progressive size=1280x720@59.94 bit-rate=1-24M audio-codec=LPCM sampling-rate=48k channels=1-2 bits-per-sample=16 
AVC_TS_HD_24_AC3           +_ISO,+,+_T  video-codec=H264 video-profile=Main,High video-level=1b-4 process=progressive size=1920x1080@23.976-24,1280x720@23.976-24 bit-rate=1-24M audio-codec=AC3 sampling-rate=48k channels=1-6 audio-bit-rate=64k-640k inferred
AVC_TS_HD_24_LPCM          +_T          video-codec=H264 video-profile=Main,High video-level=1b-4 process=progressive size=1920x1080@23.976-24,1280x720@23.976-24 bit-rate=1-24M audio-codec=LPCM sampling-rate=48k channels=1-2 bits-per-sample=16 inferred
AVC_TS_MP_HD_AAC           +_ISO,+,+_T  video-codec=H264 video-profile=ConstrainedBaseline,Main video-level=1b-4 size=-1920x1152@1-25,-1920x1080@1-30,-1280x720@1-60 video-bit-rate=1-20M audio-codec=AAC sampling-rate=32k-48k channels=1-2 audio-bit-rate=1-576k
AVC_TS_MP_HD_AAC_MULT5     +_ISO,+,+_T  video-codec=H264 video-profile=ConstrainedBaseline,Main video-level=1b-4 size=-1920x1152@1-25,-1920x1080@1-30,-1280x720@1-60 video-bit-rate=1-20M audio-codec=AAC sampling-rate=32k-48k channels=1-6 audio-bit-rate=1-1440k
AVC_TS_MP_HD_AC3           +_ISO,+,+_T  video-codec=H264 video-profile=ConstrainedBaseline,Main video-level=1b-4 size=-1920x1152@1-25,-1920x1080@1-30,-1280x720@1-60 video-bit-rate=1-20M audio-codec=AC3 sampling-rate=32k,44.1k,48k channels=1-6 audio-bit-rate=64k-640k
AVC_TS_MP_HD_MPEG1_L3      +_ISO,+,+_T  video-codec=H264 video-profile=ConstrainedBaseline,Main video-level=1b-4 size=-1920x1152@1-25,-1920x1080@1-30,-1280x720@1-60 video-bit-rate=1-20M audio-codec=MP3 sampling-rate=32k,44.1k,48k channels=1-2 audio-bit-rate=32k-320k
AVC_TS_MP_HD_HEAAC_L2      +_ISO,+,+_T  video-codec=H264 video-profile=ConstrainedBaseline,Main video-level=1b-4 size=-1920x1152@1-25,-1920x1080@1-30,-1280x720@1-60 video-bit-rate=1-20M audio-codec=HE-AAC sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-576k
AVC_TS_MP_HD_AAC_LTP       +_ISO,+,+_T  video-codec=H264 video-profile=ConstrainedBaseline,Main video-level=1b-4 size=-1920x1152@1-25,-1920x1080@1-30,-1280x720@1-60 video-bit-rate=1-20M audio-codec=AAC-LTP sampling-rate=8k-48k channels=1-2 audio-bit-rate=1-576k
AVC_TS_MP_HD_AAC_LTP_MULT5 +_ISO,+,+_T  video-codec=H264 video-profile=ConstrainedBaseline,Main video-level=1b-4 size=-1920x1152@1-25,-1920x1080@1-30,-1280x720@1-60 video-bit-rate=1-20M audio-codec=AAC-LTP sampling-rate=8k-96k channels=3-6 audio-bit-rate=1-2880k
AVC_TS_MP_HD_AAC_LTP_MULT7 +_ISO,+,+_T  video-codec=H264 video-profile=ConstrainedBaseline,Main video-level=1b-4 size=-1920x1152@1-25,-1920x1080@1-30,-1280x720@1-60 video-bit-rate=1-20M audio-codec=AAC-LTP sampling-rate=8k-96k channels=7-8 audio-bit-rate=1-4032k
AVC_TS_HP_SD_AC3           +_ISO,+_T    video-codec=H264 video-profile=ConstrainedBaseline,Main,High video-level=1b-3 size=-720x576@1-25,-720x480@1-30 video-bit-rate=1-12.5M audio-codec=AC3 sampling-rate=32k,44.1k,48k channels=1-6 audio-bit-rate=64k-640k inferred
AVC_TS_HP_SD_EAC3          +_ISO,+_T    video-codec=H264 video-profile=ConstrainedBaseline,Main,High video-level=1b-3 size=-720x576@1-25,-720x480@1-30 video-bit-rate=1-12.5M audio-codec=EAC3 sampling-rate=32k,44.1k,48k channels=1-6 audio-bit-rate=32k-3024k inferred
AVC_TS_HP_SD_MPEG1_L2      +_ISO,+_T    video-codec=H264 video-profile=ConstrainedBaseline,Main,High video-level=1b-3 size=-720x576@1-25,-720x480@1-30 video-bit-rate=1-12.5M audio-codec=MP2 sampling-rate=32k,44.1k,48k channels=1-2 audio-bit-rate=32k-384k inferred
AVC_TS_HP_SD_HEAACv2_L4    +_ISO,+_T    video-codec=H264 video-profile=ConstrainedBaseline,Main,High video-level=1b-3 size=-720x576@1-25,-720x480@1-30 video-bit-rate=1-12.5M audio-codec=HE-AAC,HE-AACv2 sampling-rate=8k-48k channels=1-6 audio-bit-rate=1-1440k inferred
AVC_TS_HP_HD_AC3           +_ISO,+,+_T  video-codec=H264 video-profile=ConstrainedBaseline,Main,High video-level=1b-4 size=-1920x1152@1-25,-1920x1080@1-30,-1280x720@1-60 video-bit-rate=1-30M audio-codec=AC3 sampling-rate=32k,44.1k,48k channels=1-6 audio-bit-rate=64k-640k
AVC_TS_HP_HD_EAC3          +_ISO,+_T    video-codec=H264 video-profile=ConstrainedBaseline,Main,High video-level=1b-4 size=-1920x1152@1-25,-1920x1080@1-30,-1280x720@1-60 video-bit-rate=1-30M audio-codec=EAC3 sampling-rate=32k,44.1k,48k channels=1-6 audio-bit-rate=32k-3024k inferred
AVC_TS_HP_HD_MPEG1_L2      +_ISO,+_T    video-codec=H264 video-profile=ConstrainedBaseline,Main,High video-level=1b-4 size=-1920x1152@1-25,-1920x1080@1-30,-1280x720@1-60 video-bit-rate=1-30M audio-codec=MP2 sampling-rate=32k,44.1k,48k channels=1-2 audio-bit-rate=32k-384k inferred
AVC_TS_HP_HD_HEAACv2_L4    +_ISO,+_T    video-codec=H264 video-profile=ConstrainedBaseline,Main,High video-level=1b-4 size=-1920x1152@1-25,-1920x1080@1-30,-1280x720@1-60 video-bit-rate=1-30M audio-codec=HE-AAC,HE-AACv2 sampling-rate=8k-48k channels=1-6 audio-bit-rate=1-1440k inferred
AVC_TS_NA                  +_ISO,+_T    video-codec=H264 video-profile=Main,High video-level=1b-4 size=1920x1080,1440x1080,1280x720,720x480,704x480,640x480,544x480,528x480,480x480,352x480 frame-rate=23.976-24,29.97-30,59.94-60 video-bit-rate=1-20M audio-codec=AC3,EAC3,HE-AAC,HE-AACv2,MP2 sampling-rate=32k,44.1k,48k channels=1-6 audio-bit-rate=1-3024k region=NA inferred
AVC_TS_EU                  +_ISO        video-codec=H264 video-profile=Main,High video-level=1b-4 size=1920x1080@25,1440x1080@25,1280x1080@25,960x1080@25,1280x720@50,960x720@50,720x576@25,544x576@25,480x576@25,352x576@25 video-bit-rate=1-25M audio-codec=AC3,EAC3,HE-AAC,HE-AACv2,MP2 sampling-rate=32k,44.1k,48k channels=1-6 audio-bit-rate=1-3024k region=EU inferred
AVC_TS_SD_EU               +_ISO,+,+_T  video-codec=H264 video-profile=ConstrainedBaseline,Main,High video-level=1b-3 size=-720x576@25 video-bit-rate=1-12.5M audio-codec=AAC,AC3,EAC3,HE-AAC,HE-AACv2,MP2 sampling-rate=32k,44.1k,48k channels=1-6 audio-bit-rate=1-3024k region=EU inferred
AVC_TS_HD_EU               +_ISO,+,+_T  video-codec=H264 video-profile=ConstrainedBaseline,Main,High video-level=1b-4 size=-1920x1080@25,-1280x720@50 video-bit-rate=1-25M audio-codec=AAC,AC3,EAC3,HE-AAC,HE-AACv2,MP2 sampling-rate=32k,44.1k,48k channels=1-6 audio-bit-rate=1-3024k region=EU inferred
AVC_TS_JP_AAC              +_T          video-codec=H264 video-profile=Main,High video-level=1b-4 size=1920x1080@29.97,1440x1080@29.97,1280x720@59.94,720x480@29.97,720x480@59.94 video-bit-rate=1-24M audio-codec=AAC sampling-rate=48k channels=1-6 audio-bit-rate=1-1440k region=JP inferred

# MPEG-4 part 2 in transport streams: simple, core, advanced simple.
MPEG4_P2_TS_SP_AAC         +_ISO,+,+_T  video-codec=MPEG4 video-profile=Simple video-level=0,1 size=-352x288@1-30 video-bit-rate=1-64k bit-rate=1-600k audio-codec=AAC sampling-rate=32k-48k channels=1-2 audio-bit-rate=1-216k
MPEG4_P2_TS_SP_AAC         +_ISO,+,+_T  video-codec=MPEG4 video-profile=Simple video-level=0b,2 size=-352x288@1-30 video-bit-rate=1-128k bit-rate=1-600k audio-codec=AAC sampling-rate=32k-48k channels=1-2 audio-bit-rate=1-216k
MPEG4_P2_TS_SP_AAC         +_ISO,+,+_T  video-codec=MPEG4 video-profile=Simple video-level=3 size=-352x288@1-30 video-bit-rate=1-384k bit-rate=1-600k audio-codec=AAC sampling-rate=32k-48k channels=1-2 audio-bit-rate=1-216k
MPEG4_P2_TS_SP_AC3         +_ISO,+,+_T  video-codec=MPEG4 video-profile=Simple video-level=0,1 size=-352x288@1-30 video-bit-rate=1-64k audio-codec=AC3 sampling-rate=32k,44.1k,48k channels=1-6 audio-bit-rate=64k-640k
MPEG4_P2_TS_SP_AC3         +_ISO,+,+_T  video-codec=MPEG4 video-profile=Simple video-level=0b,2 size=-352x288@1-30 video-bit-rate=1-128k audio-codec=AC3 sampling-rate=32k,44.1k,48k channels=1-6 audio-bit-rate=64k-640k
MPEG4_P2_TS_SP_AC3         +_ISO,+,+_T  video-codec=MPEG4 video-profile=Simple video-level=3 size=-352x288@1-30 video-bit-rate=1-384k audio-codec=AC3 sampling-rate=32k,44.1k,48k channels=1-6 audio-bit-rate=64k-640k
MPEG4_P2_TS_SP_MPEG1_L3    +_ISO,+,+_T  video-codec=MPEG4 video-profile=Simple video-level=0,1 size=-352x288@1-30 video-bit-rate=1-64k audio-codec=MP3 sampling-rate=32k,44.1k,48k channels=1-2 audio-bit-rate=32k-320k
MPEG4_P2_TS_SP_MPEG1_L3    +_ISO,+,+_T  video-codec=MPEG4 video-profile=Simple video-level=0b,2 size=-352x288@1-30 video-bit-rate=1-128k audio-codec=MP3 sampling-rate=32k,44.1k,48k channels=1-2 audio-bit-rate=32k-320k
MPEG4_P2_TS_SP_MPEG1_L3    +_ISO,+,+_T  video-codec=MPEG4 video-profile=Simple video-level=3 size=-352x288@1-30 video-bit-rate=1-384k audio-codec=MP3 sampling-rate=32k,44.1k,48k channels=1-2 audio-bit-rate=32k-320k
MPEG4_P2_TS_SP_MPEG2_L2    +_ISO,+,+_T  video-codec=MPEG4 video-profile=Simple video-level=0,1 size=-352x288@1-30 video-bit-rate=1-64k audio-codec=MP1,MP2 sampling-rate=32k,44.1k,48k channels=1-2 audio-bit-rate=32k-384k
MPEG4_P2_TS_SP_MPEG2_L2    +_ISO,+,+_T  video-codec=MPEG4 video-profile=Simple video-level=0b,2 size=-352x288@1-30 video-bit-rate=1-128k audio-codec=MP1,MP2 sampling-rate=32k,44.1k,48k channels=1-2 audio-bit-rate=32k-384k
MPEG4_P2_TS_SP_MPEG2_L2    +_ISO,+,+_T  video-codec=MPEG4 video-profile=Simple video-level=3 size=-352x288@1-30 video-bit-rate=1-384k audio-codec=MP1,MP2 sampling-rate=32k,44.1k,48k channels=1-2 audio-bit-rate=32k-384k
MPEG4_P2_TS_CO_AC3         +_ISO,+,+_T  video-codec=MPEG4 video-profile=Core video-level=1-2 size=-352x288@1-30 video-bit-rate=1-2M audio-codec=AC3 sampling-rate=32k,44.1k,48k channels=1-6 audio-bit-rate=64k-640k
MPEG4_P2_TS_CO_MPEG2_L2    +_ISO,+,+_T  video-codec=MPEG4 video-profile=Core video-level=1-2 size=-352x288@1-30 video-bit-rate=1-2M audio-codec=MP1,MP2 sampling-rate=32k,44.1k,48k channels=1-2 audio-bit-rate=32k-384k
MPEG4_P2_TS_ASP_AAC        +_ISO,+,+_T  video-codec=MPEG4 video-profile=AdvancedSimple video-level=0-5 size=-720x576@1-30 video-bit-rate=1-8M audio-codec=AAC sampling-rate=32k-48k channels=1-2 audio-bit-rate=1-256k
MPEG4_P2_TS_ASP_AC3        +_ISO,+,+_T  video-codec=MPEG4 video-profile=AdvancedSimple video-level=0-5 size=-720x576@1-30 video-bit-rate=1-8M audio-codec=AC3 sampling-rate=32k,44.1k,48k channels=1-6 audio-bit-rate=64k-640k
MPEG4_P2_TS_ASP_MPEG1_L3   +_ISO,+,+_T  video-codec=MPEG4 video-profile=AdvancedSimple video-level=0-5 size=-720x576@1-30 video-bit-rate=1-8M audio-codec=MP3 sampling-rate=32k,44.1k,48k channels=1-2 audio-bit-rate=32k-320k
MPEG4_P2_TS_ASP_MPEG2_L2   +_ISO,+,+_T  video-codec=MPEG4 video-profile=AdvancedSimple video-level=0-5 size=-720x576@1-30 video-bit-rate=1-8M audio-codec=MP1,MP2 sampling-rate=32k,44.1k,48k channels=1-2 audio-bit-rate=32k-384k
)table";

} // namespace

std::string_view BuiltInProfileRules_Text() {
    return kText;
}
