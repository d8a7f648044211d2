# The doors that outside bytes come through, as far as they are built: EZ_FUZZ_DOORS, and the library of each in
# EZ_FUZZ_LIBRARY_<door>. A door is a source fuzz_<door>.cpp and the folders corpus/<door> and regressions/<door>.
set(EZ_FUZZ_DOORS)

# ez_add_doors(<library> <door>...): nothing where the library is not built.
macro(ez_add_doors LIBRARY)
    if(TARGET ${LIBRARY})
        foreach(DOOR ${ARGN})
            list(APPEND EZ_FUZZ_DOORS ${DOOR})
            set(EZ_FUZZ_LIBRARY_${DOOR} ${LIBRARY})
        endforeach()
    endif()
endmacro()

ez_add_doors(ezParsersFramework_inside
    base64_part file_name mapper_file mapper_line media_parser_stream media_types_ini profile_info_list
    protocol_info stream_adapter uri)
ez_add_doors(ezFormats_inside
    es_ac3 es_adts es_h264 es_mpeg_audio es_mpeg_video es_race format_iso_media format_jpeg format_mpeg_audio
    format_png profile_rules)
if(TARGET ezLiveStreams_inside)
    get_target_property(EZ_LIVE_STREAM_DEFINITIONS ezLiveStreams_inside INTERFACE_COMPILE_DEFINITIONS)
    if("EZ_HAS_HTTP_STREAM" IN_LIST EZ_LIVE_STREAM_DEFINITIONS)
        ez_add_doors(ezLiveStreams_inside http_response)
    endif()
endif()
ez_add_doors(ezPlaylists_inside playlist_asx playlist_m3u playlist_pls)
if(TARGET ezPlaylists_inside)
    get_target_property(EZ_PLAYLIST_DEFINITIONS ezPlaylists_inside INTERFACE_COMPILE_DEFINITIONS)
    if("EZ_HAS_XML_PLAYLISTS" IN_LIST EZ_PLAYLIST_DEFINITIONS)
        ez_add_doors(ezPlaylists_inside playlist_wpl playlist_xspf)
    endif()
endif()
ez_add_doors(ezThumbnails_inside cover_flac cover_id3 cover_mp4 cover_ogg picture)
ez_add_doors(ezannounce_inside tool_mapper_check tool_text)
