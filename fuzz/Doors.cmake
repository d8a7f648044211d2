# The doors that outside bytes come through, as far as they are built: EZ_FUZZ_DOORS, and of each its library,
# EZ_FUZZ_LIBRARY_<door>, and the sources that it is about, EZ_FUZZ_SOURCES_<door>. A door is a source fuzz_<door>.cpp and
# the folders corpus/<door> and regressions/<door>.
set(EZ_FUZZ_DOORS)

# ez_add_door(<library> <door> <source>...): nothing where the library is not built. The sources are those whose every
# branch the door's corpus reaches if a valid input does; what only carries bytes to them is another door's. Some stand
# past several doors.
macro(ez_add_door LIBRARY DOOR)
    if(TARGET ${LIBRARY})
        list(APPEND EZ_FUZZ_DOORS ${DOOR})
        set(EZ_FUZZ_LIBRARY_${DOOR} ${LIBRARY})
        set(EZ_FUZZ_SOURCES_${DOOR})
        foreach(PATTERN ${ARGN})
            file(GLOB FOUND RELATIVE ${PROJECT_SOURCE_DIR} CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${PATTERN})
            if(NOT FOUND)
                message(FATAL_ERROR "The door ${DOOR} is about ${PATTERN}, which is not there")
            endif()
            list(APPEND EZ_FUZZ_SOURCES_${DOOR} ${FOUND})
        endforeach()
        list(REMOVE_DUPLICATES EZ_FUZZ_SOURCES_${DOOR})
    endif()
endmacro()

set(PLATFORM ezPlatform)
set(FRAMEWORK ezParsersFramework)
ez_add_door(ezParsersFramework_inside base64_part ${PLATFORM}/text/Base64.cpp
    ${FRAMEWORK}/FilePartThumbnailSource.cpp)
ez_add_door(ezParsersFramework_inside file_name
    ${PLATFORM}/files/PathName.cpp ${FRAMEWORK}/DLNAFileParser.cpp)
ez_add_door(ezParsersFramework_inside mapper_file
    ${PLATFORM}/files/TextFile.cpp ${FRAMEWORK}/DLNAMediaMapper.cpp ${FRAMEWORK}/DLNAMediaMapperParser.cpp
    ${FRAMEWORK}/detail/MediaMapperFile.cpp ${FRAMEWORK}/detail/MediaMapperName.cpp)
ez_add_door(ezParsersFramework_inside mapper_line ${FRAMEWORK}/DLNAMediaMapperEntry.cpp)
ez_add_door(ezParsersFramework_inside media_parser_stream
    ${FRAMEWORK}/MediaParserStream.cpp ${FRAMEWORK}/FileMediaParserStream.cpp)
ez_add_door(ezParsersFramework_inside media_types_ini
    ${PLATFORM}/config/Config.cpp ${FRAMEWORK}/ExtensionMimeTypeMatcher.cpp
    ${FRAMEWORK}/ExtensionMimeTypeMatcherEntry.cpp ${FRAMEWORK}/MimeTypesDotIniParser.cpp)
ez_add_door(ezParsersFramework_inside mime_type ${PLATFORM}/text/MimeTypeInfo.cpp)
ez_add_door(ezParsersFramework_inside profile_info_list ${PLATFORM}/dlna/ProtocolInfoList.cpp)
ez_add_door(ezParsersFramework_inside protocol_info
    ${PLATFORM}/dlna/DLNAField.cpp ${PLATFORM}/dlna/ProtocolInfo.cpp)
ez_add_door(ezParsersFramework_inside stream_adapter ${FRAMEWORK}/StreamMediaParserStream.cpp)
ez_add_door(ezParsersFramework_inside uri ${PLATFORM}/text/URI.cpp)

set(BYTES companions/ezBytes)
set(FORMATS companions/ezFormats)
set(FRAME_CHAIN ${FORMATS}/elementary/FrameChainEltStreamParser.cpp ${FORMATS}/elementary/WrapperWatch.cpp)
set(START_CODE ${FORMATS}/elementary/StartCodeEltStreamParser.cpp ${FORMATS}/elementary/WrapperWatch.cpp)
ez_add_door(ezFormats_inside es_ac3 ${FORMATS}/elementary/AC3EltStreamParser.cpp ${FORMATS}/codecs/AC3Header.cpp ${FRAME_CHAIN})
ez_add_door(ezFormats_inside es_adts ${FORMATS}/elementary/ADTSEltStreamParser.cpp ${FORMATS}/codecs/ADTSHeader.cpp ${FRAME_CHAIN})
ez_add_door(ezFormats_inside es_eac3 ${FORMATS}/elementary/EAC3EltStreamParser.cpp ${FORMATS}/codecs/EAC3Header.cpp ${FRAME_CHAIN})
set(UNITS ${FORMATS}/codecs/NALUnits.cpp ${FORMATS}/codecs/VideoSEI.cpp ${FORMATS}/codecs/VideoUsability.cpp)
ez_add_door(ezFormats_inside codec_h264 ${FORMATS}/codecs/H264Video.cpp ${FORMATS}/codecs/H264Headers.cpp ${UNITS})
ez_add_door(ezFormats_inside codec_h265 ${FORMATS}/codecs/H265Video.cpp ${FORMATS}/codecs/H265Headers.cpp
    ${FORMATS}/codecs/H265SetParts.cpp ${UNITS})
ez_add_door(ezFormats_inside es_h264 ${FORMATS}/elementary/H264EltStreamParser.cpp ${FORMATS}/codecs/H264Headers.cpp
    ${FORMATS}/elementary/CodedVideoRecord.cpp ${START_CODE})
ez_add_door(ezFormats_inside es_h265 ${FORMATS}/elementary/H265EltStreamParser.cpp ${FORMATS}/codecs/H265Headers.cpp
    ${FORMATS}/codecs/H265SetParts.cpp ${FORMATS}/elementary/CodedVideoRecord.cpp ${START_CODE})
ez_add_door(ezFormats_inside es_mpeg4 ${FORMATS}/elementary/MPEG4EltStreamParser.cpp ${FORMATS}/codecs/MPEG4Headers.cpp
    ${FORMATS}/elementary/CodedVideoRecord.cpp ${START_CODE})
ez_add_door(ezFormats_inside es_mpeg_audio
    ${FORMATS}/elementary/MPEGAudioEltStreamParser.cpp ${FORMATS}/codecs/MPEGAudioHeader.cpp ${FRAME_CHAIN})
ez_add_door(ezFormats_inside es_mpeg_video
    ${FORMATS}/elementary/MPEGVideoEltStreamParser.cpp ${FORMATS}/codecs/MPEGVideoHeaders.cpp ${START_CODE})
ez_add_door(ezFormats_inside es_vc1 ${FORMATS}/elementary/VC1EltStreamParser.cpp ${FORMATS}/codecs/VC1Headers.cpp
    ${FORMATS}/elementary/CodedVideoRecord.cpp ${START_CODE})
ez_add_door(ezFormats_inside es_race ${FORMATS}/EltStreamCandidates.cpp ${FORMATS}/elementary/VideoCandidates.cpp)

# Readers of a codec's headers, as containers of films hand them on.
set(FACTS ${FORMATS}/codecs/DynamicRange.cpp)
ez_add_door(ezFormats_inside codec_av1 ${FORMATS}/codecs/AV1Video.cpp ${FACTS})
ez_add_door(ezFormats_inside codec_h263 ${FORMATS}/codecs/H263Video.cpp ${FORMATS}/codecs/VP6Video.cpp)
ez_add_door(ezFormats_inside codec_intra ${FORMATS}/codecs/MJPEGVideo.cpp ${FORMATS}/codecs/DVVideo.cpp
    ${FORMATS}/codecs/DVSound.cpp ${FORMATS}/codecs/ProResVideo.cpp)
ez_add_door(ezFormats_inside codec_mpegvideo ${FORMATS}/codecs/MPEGVideo.cpp ${FORMATS}/codecs/MPEGVideoHeaders.cpp)
ez_add_door(ezFormats_inside codec_mpeg4 ${FORMATS}/codecs/MPEG4Visual.cpp ${FORMATS}/codecs/MPEG4Headers.cpp)
ez_add_door(ezFormats_inside codec_theora ${FORMATS}/codecs/TheoraHeader.cpp ${FORMATS}/codecs/XiphLacing.cpp)
ez_add_door(ezFormats_inside codec_vc1 ${FORMATS}/codecs/VC1Video.cpp ${FORMATS}/codecs/VC1Headers.cpp)
ez_add_door(ezFormats_inside codec_vpx ${FORMATS}/codecs/VPXVideo.cpp ${FACTS})

# What every parser of files stands on.
set(FILES ${FORMATS}/FormatParser.cpp ${FORMATS}/detail/MediaBytes.cpp ${BYTES}/BudgetedBytes.cpp ${BYTES}/ByteReader.cpp
    ${BYTES}/ByteSource.cpp)

# ez_find_sources(<variable> <folder>): the sources of a format's folder, and those of the codecs and of bytes that they
# include. What these include in turn is another door's.
function(ez_find_sources VARIABLE FOLDER)
    file(GLOB FILES CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${FOLDER}/*.cpp ${PROJECT_SOURCE_DIR}/${FOLDER}/*.h)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${FILES})
    set(FOUND ${FOLDER}/*.cpp)
    foreach(FILE ${FILES})
        file(STRINGS ${FILE} LINES REGEX "^#include \"(ezBytes|ezFormats/codecs)/.*\"$")
        foreach(LINE ${LINES})
            string(REGEX REPLACE ".*\"(.*)\\.h\"" "companions/\\1.cpp" SOURCE ${LINE})
            if(EXISTS ${PROJECT_SOURCE_DIR}/${SOURCE})
                list(APPEND FOUND ${SOURCE})
            endif()
        endforeach()
    endforeach()
    list(REMOVE_DUPLICATES FOUND)
    set(${VARIABLE} ${FOUND} PARENT_SCOPE)
endfunction()

# A door for each folder of the list of formats: MORE_ is what it is about beside that, LESS_ what it only makes use of.
set(MORE_mpegaudio ${FORMATS}/tags/*.cpp ${FORMATS}/elementary/WrapperWatch.cpp ${BYTES}/TextBytes.cpp ${BYTES}/Utf8.cpp)
set(LESS_mpegaudio ${BYTES}/CodePage.cpp ${BYTES}/LeadingTag.cpp)
set(MORE_ac3 ${FORMATS}/codecs/AC3Header.cpp ${FORMATS}/codecs/EAC3Header.cpp ${FORMATS}/frames/*.cpp)
set(MORE_adts ${FORMATS}/codecs/ADTSHeader.cpp)
set(MORE_dts ${FORMATS}/frames/*.cpp)
set(MORE_mlp ${FORMATS}/codecs/AC3Header.cpp ${FORMATS}/codecs/MLPHeader.cpp ${FORMATS}/frames/*.cpp)
set(MORE_ts ${FORMATS}/mpegsystem/*.cpp)
set(MAGICS)
get_property(FOLDERS GLOBAL PROPERTY EZ_FORMAT_FOLDERS)
foreach(FOLDER ${FOLDERS})
    ez_find_sources(FORMAT_SOURCES ${FORMATS}/${FOLDER})
    list(REMOVE_ITEM FORMAT_SOURCES ${LESS_${FOLDER}})
    ez_add_door(ezFormats_inside format_${FOLDER} ${FORMAT_SOURCES} ${FILES} ${MORE_${FOLDER}})
    list(APPEND MAGICS ${FORMATS}/${FOLDER}/*Parser.cpp)
endforeach()
ez_add_door(ezFormats_inside format_magic
    ${FORMATS}/detail/MagicParser.cpp ${FORMATS}/detail/FormatMagic.cpp ${MAGICS} ${FILES})
ez_add_door(ezFormats_inside profile_rules
    ${FORMATS}/ProfileRules.cpp ${FORMATS}/rules/ProfileRule*.cpp ${FORMATS}/rules/ProfileNames.cpp)

if(TARGET ezLiveStreams_inside)
    get_target_property(EZ_LIVE_STREAM_DEFINITIONS ezLiveStreams_inside INTERFACE_COMPILE_DEFINITIONS)
    if("EZ_HAS_HTTP_STREAM" IN_LIST EZ_LIVE_STREAM_DEFINITIONS)
        ez_add_door(ezLiveStreams_inside http_response companions/ezLiveStreams/detail/HttpResponse.cpp)
    endif()
endif()

set(PLAYLISTS companions/ezPlaylists/detail)
set(LINES ${PLAYLISTS}/LineReader.cpp ${PLAYLISTS}/StreamReader.cpp ${PLAYLISTS}/PlaylistText.cpp
    ${PLAYLISTS}/PlaylistPlace.cpp ${PLAYLISTS}/Location.cpp)
set(DOCUMENT ${PLAYLISTS}/DocumentText.cpp ${PLAYLISTS}/MarkupPlaylistParser.cpp ${PLAYLISTS}/EntryText.cpp
    ${PLAYLISTS}/IndexedPlaylistParser.cpp ${PLAYLISTS}/StreamReader.cpp ${PLAYLISTS}/PlaylistPlace.cpp
    ${PLAYLISTS}/Location.cpp)
ez_add_door(ezPlaylists_inside playlist_asx
    ${PLAYLISTS}/ASXPlaylistParser.cpp ${PLAYLISTS}/AsxEntries.cpp ${PLAYLISTS}/MarkupScanner.cpp ${DOCUMENT})
ez_add_door(ezPlaylists_inside playlist_m3u companions/ezPlaylists/M3UPlaylistParser.cpp ${LINES})
ez_add_door(ezPlaylists_inside playlist_pls
    ${PLAYLISTS}/PLSPlaylistParser.cpp ${PLAYLISTS}/IndexedPlaylistParser.cpp ${LINES})
ez_add_door(ezPlaylists_inside playlist_wpl
    ${PLAYLISTS}/WPLPlaylistParser.cpp ${PLAYLISTS}/WplEntries.cpp ${PLAYLISTS}/XmlScanner.cpp
    ${PLAYLISTS}/MarkupScanner.cpp ${DOCUMENT})
ez_add_door(ezPlaylists_inside playlist_xspf
    ${PLAYLISTS}/XSPFPlaylistParser.cpp ${PLAYLISTS}/XspfEntries.cpp ${PLAYLISTS}/XmlScanner.cpp
    ${PLAYLISTS}/MarkupScanner.cpp ${DOCUMENT})

set(THUMBNAILS companions/ezThumbnails/detail)
set(COVER ${THUMBNAILS}/Cover.cpp ${THUMBNAILS}/CoverStreamBytes.cpp ${THUMBNAILS}/GatheredCoverSource.cpp)
ez_add_door(ezThumbnails_inside cover_aiff ${THUMBNAILS}/ChunkCover.cpp ${BYTES}/ChunkWalk.cpp ${COVER})
ez_add_door(ezThumbnails_inside cover_ape
    ${THUMBNAILS}/APECover.cpp ${BYTES}/APEItems.cpp ${BYTES}/AudioTails.cpp ${COVER})
ez_add_door(ezThumbnails_inside cover_dsdiff ${THUMBNAILS}/ChunkCover.cpp ${BYTES}/ChunkWalk.cpp ${COVER})
ez_add_door(ezThumbnails_inside cover_dsf ${THUMBNAILS}/ChunkCover.cpp ${COVER})
ez_add_door(ezThumbnails_inside cover_asf
    ${THUMBNAILS}/ASFCover.cpp ${BYTES}/ASFAttributes.cpp ${BYTES}/ASFObjects.cpp ${COVER})
ez_add_door(ezThumbnails_inside cover_flac ${THUMBNAILS}/FLACCover.cpp ${COVER})
ez_add_door(ezThumbnails_inside cover_id3
    ${THUMBNAILS}/ID3Cover.cpp ${BYTES}/ID3Tag.cpp ${BYTES}/InflatedBytes.cpp ${COVER})
ez_add_door(ezThumbnails_inside cover_matroska
    ${THUMBNAILS}/MatroskaCover.cpp ${BYTES}/EBMLWalk.cpp ${BYTES}/MatroskaAttachments.cpp
    ${BYTES}/MatroskaBlocks.cpp ${BYTES}/MatroskaCoverTrack.cpp ${BYTES}/MatroskaSegment.cpp
    ${COVER})
ez_add_door(ezThumbnails_inside cover_mp4 ${THUMBNAILS}/MP4Cover.cpp ${BYTES}/BoxWalk.cpp ${COVER})
ez_add_door(ezThumbnails_inside cover_ogg ${THUMBNAILS}/OggCover.cpp ${COVER})
ez_add_door(ezThumbnails_inside cover_wav ${THUMBNAILS}/ChunkCover.cpp ${BYTES}/WAVWalk.cpp ${COVER})
ez_add_door(ezThumbnails_inside picture
    ${THUMBNAILS}/AreaScaler.cpp ${THUMBNAILS}/JpegDecoder.cpp ${THUMBNAILS}/JpegEncoder.cpp ${THUMBNAILS}/JpegWriter.cpp
    ${THUMBNAILS}/Picture.cpp
    ${THUMBNAILS}/PictureReader.cpp ${THUMBNAILS}/PngDecoder.cpp ${THUMBNAILS}/PngEncoder.cpp
    companions/ezThumbnails/PictureThumbnailGenerator.cpp)

set(TOOL tools/ezannounce)
set(HOSTING companions/ezHosting/detail)
ez_add_door(ezHosting_inside subtitle_content ${HOSTING}/SubtitleContent.cpp ${HOSTING}/SubtitleMarkup.cpp)
ez_add_door(ezHosting_inside subtitle_name ${HOSTING}/SubtitleName.cpp ${HOSTING}/LanguageNames.cpp)
ez_add_door(ezannounce_inside tool_mapper_check ${TOOL}/mapper/MapperCheck.cpp)
ez_add_door(ezannounce_inside tool_text ${TOOL}/output/Columns.cpp ${TOOL}/playlist/PlaylistBeginning.cpp ${TOOL}/output/SafeText.cpp)
