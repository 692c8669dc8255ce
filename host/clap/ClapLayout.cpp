// The layout that every other CLAP program was built with, held against our declarations at compile time.
#include "host/clap/Clap.h"

#include <cstddef>

#define SIZE(type, size, alignment) static_assert(sizeof(type) == (size) && alignof(type) == (alignment))
#define AT(type, field, offset) static_assert(offsetof(type, field) == (offset))

SIZE(clap_version, 12, 4);
AT(clap_version, major, 0);
AT(clap_version, minor, 4);
AT(clap_version, revision, 8);

SIZE(clap_plugin_entry, 40, 8);
AT(clap_plugin_entry, clap_version, 0);
AT(clap_plugin_entry, init, 16);
AT(clap_plugin_entry, deinit, 24);
AT(clap_plugin_entry, get_factory, 32);

SIZE(clap_plugin_factory, 24, 8);
AT(clap_plugin_factory, get_plugin_count, 0);
AT(clap_plugin_factory, get_plugin_descriptor, 8);
AT(clap_plugin_factory, create_plugin, 16);

SIZE(clap_plugin_descriptor, 88, 8);
AT(clap_plugin_descriptor, clap_version, 0);
AT(clap_plugin_descriptor, id, 16);
AT(clap_plugin_descriptor, name, 24);
AT(clap_plugin_descriptor, vendor, 32);
AT(clap_plugin_descriptor, url, 40);
AT(clap_plugin_descriptor, manual_url, 48);
AT(clap_plugin_descriptor, support_url, 56);
AT(clap_plugin_descriptor, version, 64);
AT(clap_plugin_descriptor, description, 72);
AT(clap_plugin_descriptor, features, 80);

SIZE(clap_plugin, 96, 8);
AT(clap_plugin, desc, 0);
AT(clap_plugin, plugin_data, 8);
AT(clap_plugin, init, 16);
AT(clap_plugin, destroy, 24);
AT(clap_plugin, activate, 32);
AT(clap_plugin, deactivate, 40);
AT(clap_plugin, start_processing, 48);
AT(clap_plugin, stop_processing, 56);
AT(clap_plugin, reset, 64);
AT(clap_plugin, process, 72);
AT(clap_plugin, get_extension, 80);
AT(clap_plugin, on_main_thread, 88);

SIZE(clap_host, 88, 8);
AT(clap_host, clap_version, 0);
AT(clap_host, host_data, 16);
AT(clap_host, name, 24);
AT(clap_host, vendor, 32);
AT(clap_host, url, 40);
AT(clap_host, version, 48);
AT(clap_host, get_extension, 56);
AT(clap_host, request_restart, 64);
AT(clap_host, request_process, 72);
AT(clap_host, request_callback, 80);

SIZE(clap_process, 64, 8);
AT(clap_process, steady_time, 0);
AT(clap_process, frames_count, 8);
AT(clap_process, transport, 16);
AT(clap_process, audio_inputs, 24);
AT(clap_process, audio_outputs, 32);
AT(clap_process, audio_inputs_count, 40);
AT(clap_process, audio_outputs_count, 44);
AT(clap_process, in_events, 48);
AT(clap_process, out_events, 56);

SIZE(clap_audio_buffer, 32, 8);
AT(clap_audio_buffer, data32, 0);
AT(clap_audio_buffer, data64, 8);
AT(clap_audio_buffer, channel_count, 16);
AT(clap_audio_buffer, latency, 20);
AT(clap_audio_buffer, constant_mask, 24);

SIZE(clap_event_header, 16, 4);
AT(clap_event_header, size, 0);
AT(clap_event_header, time, 4);
AT(clap_event_header, space_id, 8);
AT(clap_event_header, type, 10);
AT(clap_event_header, flags, 12);

SIZE(clap_event_note, 40, 8);
AT(clap_event_note, header, 0);
AT(clap_event_note, note_id, 16);
AT(clap_event_note, port_index, 20);
AT(clap_event_note, channel, 22);
AT(clap_event_note, key, 24);
AT(clap_event_note, velocity, 32);

SIZE(clap_event_note_expression, 40, 8);
AT(clap_event_note_expression, header, 0);
AT(clap_event_note_expression, expression_id, 16);
AT(clap_event_note_expression, note_id, 20);
AT(clap_event_note_expression, port_index, 24);
AT(clap_event_note_expression, channel, 26);
AT(clap_event_note_expression, key, 28);
AT(clap_event_note_expression, value, 32);

SIZE(clap_event_param_value, 56, 8);
AT(clap_event_param_value, header, 0);
AT(clap_event_param_value, param_id, 16);
AT(clap_event_param_value, cookie, 24);
AT(clap_event_param_value, note_id, 32);
AT(clap_event_param_value, port_index, 36);
AT(clap_event_param_value, channel, 38);
AT(clap_event_param_value, key, 40);
AT(clap_event_param_value, value, 48);

SIZE(clap_event_param_mod, 56, 8);
AT(clap_event_param_mod, header, 0);
AT(clap_event_param_mod, param_id, 16);
AT(clap_event_param_mod, cookie, 24);
AT(clap_event_param_mod, note_id, 32);
AT(clap_event_param_mod, port_index, 36);
AT(clap_event_param_mod, channel, 38);
AT(clap_event_param_mod, key, 40);
AT(clap_event_param_mod, amount, 48);

SIZE(clap_event_param_gesture, 20, 4);
AT(clap_event_param_gesture, header, 0);
AT(clap_event_param_gesture, param_id, 16);

SIZE(clap_event_transport, 104, 8);
AT(clap_event_transport, header, 0);
AT(clap_event_transport, flags, 16);
AT(clap_event_transport, song_pos_beats, 24);
AT(clap_event_transport, song_pos_seconds, 32);
AT(clap_event_transport, tempo, 40);
AT(clap_event_transport, tempo_inc, 48);
AT(clap_event_transport, loop_start_beats, 56);
AT(clap_event_transport, loop_end_beats, 64);
AT(clap_event_transport, loop_start_seconds, 72);
AT(clap_event_transport, loop_end_seconds, 80);
AT(clap_event_transport, bar_start, 88);
AT(clap_event_transport, bar_number, 96);
AT(clap_event_transport, tsig_num, 100);
AT(clap_event_transport, tsig_denom, 102);

SIZE(clap_event_midi, 24, 4);
AT(clap_event_midi, header, 0);
AT(clap_event_midi, port_index, 16);
AT(clap_event_midi, data, 18);

SIZE(clap_event_midi_sysex, 40, 8);
AT(clap_event_midi_sysex, header, 0);
AT(clap_event_midi_sysex, port_index, 16);
AT(clap_event_midi_sysex, buffer, 24);
AT(clap_event_midi_sysex, size, 32);

SIZE(clap_event_midi2, 36, 4);
AT(clap_event_midi2, header, 0);
AT(clap_event_midi2, port_index, 16);
AT(clap_event_midi2, data, 20);

SIZE(clap_input_events, 24, 8);
AT(clap_input_events, ctx, 0);
AT(clap_input_events, size, 8);
AT(clap_input_events, get, 16);

SIZE(clap_output_events, 16, 8);
AT(clap_output_events, ctx, 0);
AT(clap_output_events, try_push, 8);

SIZE(clap_istream, 16, 8);
AT(clap_istream, ctx, 0);
AT(clap_istream, read, 8);

SIZE(clap_ostream, 16, 8);
AT(clap_ostream, ctx, 0);
AT(clap_ostream, write, 8);

SIZE(clap_color, 4, 1);
AT(clap_color, alpha, 0);
AT(clap_color, red, 1);
AT(clap_color, green, 2);
AT(clap_color, blue, 3);

SIZE(clap_audio_port_info, 288, 8);
AT(clap_audio_port_info, id, 0);
AT(clap_audio_port_info, name, 4);
AT(clap_audio_port_info, flags, 260);
AT(clap_audio_port_info, channel_count, 264);
AT(clap_audio_port_info, port_type, 272);
AT(clap_audio_port_info, in_place_pair, 280);

SIZE(clap_plugin_audio_ports, 16, 8);
AT(clap_plugin_audio_ports, count, 0);
AT(clap_plugin_audio_ports, get, 8);

SIZE(clap_host_audio_ports, 16, 8);
AT(clap_host_audio_ports, is_rescan_flag_supported, 0);
AT(clap_host_audio_ports, rescan, 8);

SIZE(clap_audio_ports_config, 304, 8);
AT(clap_audio_ports_config, id, 0);
AT(clap_audio_ports_config, name, 4);
AT(clap_audio_ports_config, input_port_count, 260);
AT(clap_audio_ports_config, output_port_count, 264);
AT(clap_audio_ports_config, has_main_input, 268);
AT(clap_audio_ports_config, main_input_channel_count, 272);
AT(clap_audio_ports_config, main_input_port_type, 280);
AT(clap_audio_ports_config, has_main_output, 288);
AT(clap_audio_ports_config, main_output_channel_count, 292);
AT(clap_audio_ports_config, main_output_port_type, 296);

SIZE(clap_plugin_audio_ports_config, 24, 8);
AT(clap_plugin_audio_ports_config, count, 0);
AT(clap_plugin_audio_ports_config, get, 8);
AT(clap_plugin_audio_ports_config, select, 16);

SIZE(clap_plugin_audio_ports_config_info, 16, 8);
AT(clap_plugin_audio_ports_config_info, current_config, 0);
AT(clap_plugin_audio_ports_config_info, get, 8);

SIZE(clap_host_audio_ports_config, 8, 8);
AT(clap_host_audio_ports_config, rescan, 0);

SIZE(clap_note_port_info, 268, 4);
AT(clap_note_port_info, id, 0);
AT(clap_note_port_info, supported_dialects, 4);
AT(clap_note_port_info, preferred_dialect, 8);
AT(clap_note_port_info, name, 12);

SIZE(clap_plugin_note_ports, 16, 8);
AT(clap_plugin_note_ports, count, 0);
AT(clap_plugin_note_ports, get, 8);

SIZE(clap_host_note_ports, 16, 8);
AT(clap_host_note_ports, supported_dialects, 0);
AT(clap_host_note_ports, rescan, 8);

SIZE(clap_param_info, 1320, 8);
AT(clap_param_info, id, 0);
AT(clap_param_info, flags, 4);
AT(clap_param_info, cookie, 8);
AT(clap_param_info, name, 16);
AT(clap_param_info, module, 272);
AT(clap_param_info, min_value, 1296);
AT(clap_param_info, max_value, 1304);
AT(clap_param_info, default_value, 1312);

SIZE(clap_plugin_params, 48, 8);
AT(clap_plugin_params, count, 0);
AT(clap_plugin_params, get_info, 8);
AT(clap_plugin_params, get_value, 16);
AT(clap_plugin_params, value_to_text, 24);
AT(clap_plugin_params, text_to_value, 32);
AT(clap_plugin_params, flush, 40);

SIZE(clap_host_params, 24, 8);
AT(clap_host_params, rescan, 0);
AT(clap_host_params, clear, 8);
AT(clap_host_params, request_flush, 16);

SIZE(clap_plugin_state, 16, 8);
AT(clap_plugin_state, save, 0);
AT(clap_plugin_state, load, 8);

SIZE(clap_host_state, 8, 8);
AT(clap_host_state, mark_dirty, 0);

SIZE(clap_plugin_latency, 8, 8);
AT(clap_plugin_latency, get, 0);

SIZE(clap_host_latency, 8, 8);
AT(clap_host_latency, changed, 0);

SIZE(clap_plugin_tail, 8, 8);
AT(clap_plugin_tail, get, 0);

SIZE(clap_host_tail, 8, 8);
AT(clap_host_tail, changed, 0);

SIZE(clap_window, 16, 8);
AT(clap_window, api, 0);
AT(clap_window, cocoa, 8);
AT(clap_window, x11, 8);
AT(clap_window, win32, 8);
AT(clap_window, ptr, 8);

SIZE(clap_gui_resize_hints, 12, 4);
AT(clap_gui_resize_hints, can_resize_horizontally, 0);
AT(clap_gui_resize_hints, can_resize_vertically, 1);
AT(clap_gui_resize_hints, preserve_aspect_ratio, 2);
AT(clap_gui_resize_hints, aspect_ratio_width, 4);
AT(clap_gui_resize_hints, aspect_ratio_height, 8);

SIZE(clap_plugin_gui, 120, 8);
AT(clap_plugin_gui, is_api_supported, 0);
AT(clap_plugin_gui, get_preferred_api, 8);
AT(clap_plugin_gui, create, 16);
AT(clap_plugin_gui, destroy, 24);
AT(clap_plugin_gui, set_scale, 32);
AT(clap_plugin_gui, get_size, 40);
AT(clap_plugin_gui, can_resize, 48);
AT(clap_plugin_gui, get_resize_hints, 56);
AT(clap_plugin_gui, adjust_size, 64);
AT(clap_plugin_gui, set_size, 72);
AT(clap_plugin_gui, set_parent, 80);
AT(clap_plugin_gui, set_transient, 88);
AT(clap_plugin_gui, suggest_title, 96);
AT(clap_plugin_gui, show, 104);
AT(clap_plugin_gui, hide, 112);

SIZE(clap_host_gui, 40, 8);
AT(clap_host_gui, resize_hints_changed, 0);
AT(clap_host_gui, request_resize, 8);
AT(clap_host_gui, request_show, 16);
AT(clap_host_gui, request_hide, 24);
AT(clap_host_gui, closed, 32);

SIZE(clap_plugin_timer_support, 8, 8);
AT(clap_plugin_timer_support, on_timer, 0);

SIZE(clap_host_timer_support, 16, 8);
AT(clap_host_timer_support, register_timer, 0);
AT(clap_host_timer_support, unregister_timer, 8);

SIZE(clap_plugin_posix_fd_support, 8, 8);
AT(clap_plugin_posix_fd_support, on_fd, 0);

SIZE(clap_host_posix_fd_support, 24, 8);
AT(clap_host_posix_fd_support, register_fd, 0);
AT(clap_host_posix_fd_support, modify_fd, 8);
AT(clap_host_posix_fd_support, unregister_fd, 16);

SIZE(clap_host_thread_check, 16, 8);
AT(clap_host_thread_check, is_main_thread, 0);
AT(clap_host_thread_check, is_audio_thread, 8);

SIZE(clap_host_log, 8, 8);
AT(clap_host_log, log, 0);

SIZE(clap_track_info, 280, 8);
AT(clap_track_info, flags, 0);
AT(clap_track_info, name, 8);
AT(clap_track_info, color, 264);
AT(clap_track_info, audio_channel_count, 268);
AT(clap_track_info, audio_port_type, 272);

SIZE(clap_plugin_track_info, 8, 8);
AT(clap_plugin_track_info, changed, 0);

SIZE(clap_host_track_info, 8, 8);
AT(clap_host_track_info, get, 0);

SIZE(clap_context_menu_target, 8, 4);
AT(clap_context_menu_target, kind, 0);
AT(clap_context_menu_target, id, 4);

SIZE(clap_context_menu_entry, 16, 8);
AT(clap_context_menu_entry, label, 0);
AT(clap_context_menu_entry, is_enabled, 8);
AT(clap_context_menu_entry, action_id, 12);

SIZE(clap_context_menu_check_entry, 16, 8);
AT(clap_context_menu_check_entry, label, 0);
AT(clap_context_menu_check_entry, is_enabled, 8);
AT(clap_context_menu_check_entry, is_checked, 9);
AT(clap_context_menu_check_entry, action_id, 12);

SIZE(clap_context_menu_item_title, 16, 8);
AT(clap_context_menu_item_title, title, 0);
AT(clap_context_menu_item_title, is_enabled, 8);

SIZE(clap_context_menu_submenu, 16, 8);
AT(clap_context_menu_submenu, label, 0);
AT(clap_context_menu_submenu, is_enabled, 8);

SIZE(clap_context_menu_builder, 24, 8);
AT(clap_context_menu_builder, ctx, 0);
AT(clap_context_menu_builder, add_item, 8);
AT(clap_context_menu_builder, supports, 16);

SIZE(clap_plugin_context_menu, 16, 8);
AT(clap_plugin_context_menu, populate, 0);
AT(clap_plugin_context_menu, perform, 8);

SIZE(clap_host_context_menu, 32, 8);
AT(clap_host_context_menu, populate, 0);
AT(clap_host_context_menu, perform, 8);
AT(clap_host_context_menu, can_popup, 16);
AT(clap_host_context_menu, popup, 24);

SIZE(clap_plugin_preset_load, 8, 8);
AT(clap_plugin_preset_load, from_location, 0);

SIZE(clap_host_preset_load, 16, 8);
AT(clap_host_preset_load, on_error, 0);
AT(clap_host_preset_load, loaded, 8);

SIZE(clap_plugin_state_context, 16, 8);
AT(clap_plugin_state_context, save, 0);
AT(clap_plugin_state_context, load, 8);

SIZE(clap_plugin_surround, 16, 8);
AT(clap_plugin_surround, is_channel_mask_supported, 0);
AT(clap_plugin_surround, get_channel_map, 8);

SIZE(clap_host_surround, 8, 8);
AT(clap_host_surround, changed, 0);

SIZE(clap_preset_discovery_factory, 24, 8);
AT(clap_preset_discovery_factory, count, 0);
AT(clap_preset_discovery_factory, get_descriptor, 8);
AT(clap_preset_discovery_factory, create, 16);

SIZE(clap_preset_discovery_provider_descriptor, 40, 8);
AT(clap_preset_discovery_provider_descriptor, clap_version, 0);
AT(clap_preset_discovery_provider_descriptor, id, 16);
AT(clap_preset_discovery_provider_descriptor, name, 24);
AT(clap_preset_discovery_provider_descriptor, vendor, 32);

SIZE(clap_preset_discovery_provider, 48, 8);
AT(clap_preset_discovery_provider, desc, 0);
AT(clap_preset_discovery_provider, provider_data, 8);
AT(clap_preset_discovery_provider, init, 16);
AT(clap_preset_discovery_provider, destroy, 24);
AT(clap_preset_discovery_provider, get_metadata, 32);
AT(clap_preset_discovery_provider, get_extension, 40);

SIZE(clap_preset_discovery_indexer, 88, 8);
AT(clap_preset_discovery_indexer, clap_version, 0);
AT(clap_preset_discovery_indexer, name, 16);
AT(clap_preset_discovery_indexer, vendor, 24);
AT(clap_preset_discovery_indexer, url, 32);
AT(clap_preset_discovery_indexer, version, 40);
AT(clap_preset_discovery_indexer, indexer_data, 48);
AT(clap_preset_discovery_indexer, declare_filetype, 56);
AT(clap_preset_discovery_indexer, declare_location, 64);
AT(clap_preset_discovery_indexer, declare_soundpack, 72);
AT(clap_preset_discovery_indexer, get_extension, 80);

SIZE(clap_preset_discovery_filetype, 24, 8);
AT(clap_preset_discovery_filetype, name, 0);
AT(clap_preset_discovery_filetype, description, 8);
AT(clap_preset_discovery_filetype, file_extension, 16);

SIZE(clap_preset_discovery_location, 32, 8);
AT(clap_preset_discovery_location, flags, 0);
AT(clap_preset_discovery_location, name, 8);
AT(clap_preset_discovery_location, kind, 16);
AT(clap_preset_discovery_location, location, 24);

SIZE(clap_preset_discovery_soundpack, 64, 8);
AT(clap_preset_discovery_soundpack, flags, 0);
AT(clap_preset_discovery_soundpack, id, 8);
AT(clap_preset_discovery_soundpack, name, 16);
AT(clap_preset_discovery_soundpack, description, 24);
AT(clap_preset_discovery_soundpack, homepage_url, 32);
AT(clap_preset_discovery_soundpack, vendor, 40);
AT(clap_preset_discovery_soundpack, image_path, 48);
AT(clap_preset_discovery_soundpack, release_timestamp, 56);

SIZE(clap_plugin_id, 16, 8);
AT(clap_plugin_id, abi, 0);
AT(clap_plugin_id, id, 8);

SIZE(clap_preset_discovery_metadata_receiver, 88, 8);
AT(clap_preset_discovery_metadata_receiver, receiver_data, 0);
AT(clap_preset_discovery_metadata_receiver, on_error, 8);
AT(clap_preset_discovery_metadata_receiver, begin_preset, 16);
AT(clap_preset_discovery_metadata_receiver, add_plugin_id, 24);
AT(clap_preset_discovery_metadata_receiver, set_soundpack_id, 32);
AT(clap_preset_discovery_metadata_receiver, set_flags, 40);
AT(clap_preset_discovery_metadata_receiver, add_creator, 48);
AT(clap_preset_discovery_metadata_receiver, set_description, 56);
AT(clap_preset_discovery_metadata_receiver, set_timestamps, 64);
AT(clap_preset_discovery_metadata_receiver, add_feature, 72);
AT(clap_preset_discovery_metadata_receiver, add_extra_info, 80);
