// CLAP extensions of the editor: window, context menu (draft), timers, file descriptors.
#pragma once

#include "host/clap/ClapPlugin.h"

#include <cstdint>

// Window.
inline constexpr char CLAP_EXT_GUI[] = "clap.gui";

inline constexpr char CLAP_WINDOW_API_WIN32[] = "win32";
inline constexpr char CLAP_WINDOW_API_COCOA[] = "cocoa";
inline constexpr char CLAP_WINDOW_API_X11[] = "x11";
inline constexpr char CLAP_WINDOW_API_WAYLAND[] = "wayland";

using clap_xwnd = unsigned long;

extern "C" {

// api tells which member of the union counts.
struct clap_window {
    const char* api;
    union {
        void* cocoa;
        unsigned long x11;
        void* win32;
        void* ptr;
    };
};

struct clap_gui_resize_hints {
    bool can_resize_horizontally;
    bool can_resize_vertically;
    bool preserve_aspect_ratio;
    std::uint32_t aspect_ratio_width;
    std::uint32_t aspect_ratio_height;
};

// Embedded: create, set_scale, get_size or set_size, set_parent, show; floating: create, set_transient, show.
struct clap_plugin_gui {
    bool (*is_api_supported)(const clap_plugin*, const char* api, bool is_floating) noexcept;      // [main]
    bool (*get_preferred_api)(const clap_plugin*, const char** api, bool* is_floating) noexcept;   // [main]
    bool (*create)(const clap_plugin*, const char* api, bool is_floating) noexcept;                // [main]
    void (*destroy)(const clap_plugin*) noexcept;                                                  // [main]
    bool (*set_scale)(const clap_plugin*, double scale) noexcept;                                  // [main]
    bool (*get_size)(const clap_plugin*, std::uint32_t* width, std::uint32_t* height) noexcept;    // [main]
    bool (*can_resize)(const clap_plugin*) noexcept;                                               // [main & embedded]
    bool (*get_resize_hints)(const clap_plugin*, clap_gui_resize_hints* hints) noexcept;           // [main & embedded]
    bool (*adjust_size)(const clap_plugin*, std::uint32_t* width, std::uint32_t* height) noexcept; // [main & embedded]
    bool (*set_size)(const clap_plugin*, std::uint32_t width, std::uint32_t height) noexcept;      // [main & embedded]
    bool (*set_parent)(const clap_plugin*, const clap_window* window) noexcept;                    // [main & embedded]
    bool (*set_transient)(const clap_plugin*, const clap_window* window) noexcept;                 // [main & floating]
    void (*suggest_title)(const clap_plugin*, const char* title) noexcept;                         // [main & floating]
    bool (*show)(const clap_plugin*) noexcept;                                                     // [main]
    bool (*hide)(const clap_plugin*) noexcept;                                                     // [main]
};

// request_resize speaks of the client area. After closed(true) the host answers with destroy.
struct clap_host_gui {
    void (*resize_hints_changed)(const clap_host*) noexcept;                                      // [any & embedded]
    bool (*request_resize)(const clap_host*, std::uint32_t width, std::uint32_t height) noexcept; // [any & embedded]
    bool (*request_show)(const clap_host*) noexcept;                                              // [any]
    bool (*request_hide)(const clap_host*) noexcept;                                              // [any]
    void (*closed)(const clap_host*, bool was_destroyed) noexcept;                                // [any]
};

} // extern "C"

// Context menu.
inline constexpr char CLAP_EXT_CONTEXT_MENU[] = "clap.context-menu.draft/0";

inline constexpr std::uint32_t CLAP_CONTEXT_MENU_TARGET_KIND_GLOBAL = 0;
inline constexpr std::uint32_t CLAP_CONTEXT_MENU_TARGET_KIND_PARAM = 1;
inline constexpr std::uint32_t CLAP_CONTEXT_MENU_ITEM_ENTRY = 0;
inline constexpr std::uint32_t CLAP_CONTEXT_MENU_ITEM_CHECK_ENTRY = 1;
inline constexpr std::uint32_t CLAP_CONTEXT_MENU_ITEM_SEPARATOR = 2;
inline constexpr std::uint32_t CLAP_CONTEXT_MENU_ITEM_BEGIN_SUBMENU = 3;
inline constexpr std::uint32_t CLAP_CONTEXT_MENU_ITEM_END_SUBMENU = 4;
inline constexpr std::uint32_t CLAP_CONTEXT_MENU_ITEM_TITLE = 5;

extern "C" {

struct clap_context_menu_target {
    std::uint32_t kind;
    clap_id id;
};

struct clap_context_menu_entry {
    const char* label;
    bool is_enabled;
    clap_id action_id;
};

struct clap_context_menu_check_entry {
    const char* label;
    bool is_enabled;
    bool is_checked;
    clap_id action_id;
};

struct clap_context_menu_item_title {
    const char* title;
    bool is_enabled;
};

struct clap_context_menu_submenu {
    const char* label;
    bool is_enabled;
};

// Good only during the populate that brings it.
struct clap_context_menu_builder {
    void* ctx;
    bool (*add_item)(const clap_context_menu_builder*, std::uint32_t kind, const void* item_data) noexcept;
    bool (*supports)(const clap_context_menu_builder*, std::uint32_t kind) noexcept;
};

// A null target means the whole plug-in, in both tables; the two sides number their actions apart.
struct clap_plugin_context_menu {
    bool (*populate)(const clap_plugin*, const clap_context_menu_target* target,
                     const clap_context_menu_builder* builder) noexcept;                                     // [main]
    bool (*perform)(const clap_plugin*, const clap_context_menu_target* target, clap_id action_id) noexcept; // [main]
};

struct clap_host_context_menu {
    bool (*populate)(const clap_host*, const clap_context_menu_target* target,
                     const clap_context_menu_builder* builder) noexcept;                                   // [main]
    bool (*perform)(const clap_host*, const clap_context_menu_target* target, clap_id action_id) noexcept; // [main]
    bool (*can_popup)(const clap_host*) noexcept;                                                          // [main]
    bool (*popup)(const clap_host*, const clap_context_menu_target* target, std::int32_t screen_index, std::int32_t x,
                  std::int32_t y) noexcept; // [main]
};

} // extern "C"

// Timers and file descriptors.
inline constexpr char CLAP_EXT_TIMER_SUPPORT[] = "clap.timer-support";
inline constexpr char CLAP_EXT_POSIX_FD_SUPPORT[] = "clap.posix-fd-support";

inline constexpr std::uint32_t CLAP_POSIX_FD_READ = 1 << 0;
inline constexpr std::uint32_t CLAP_POSIX_FD_WRITE = 1 << 1;
inline constexpr std::uint32_t CLAP_POSIX_FD_ERROR = 1 << 2;

extern "C" {

struct clap_plugin_timer_support {
    void (*on_timer)(const clap_plugin*, clap_id timer_id) noexcept; // [main]
};

struct clap_host_timer_support {
    bool (*register_timer)(const clap_host*, std::uint32_t period_ms, clap_id* timer_id) noexcept; // [main]
    bool (*unregister_timer)(const clap_host*, clap_id timer_id) noexcept;                         // [main]
};

struct clap_plugin_posix_fd_support {
    void (*on_fd)(const clap_plugin*, int fd, std::uint32_t flags) noexcept; // [main]
};

struct clap_host_posix_fd_support {
    bool (*register_fd)(const clap_host*, int fd, std::uint32_t flags) noexcept; // [main]
    bool (*modify_fd)(const clap_host*, int fd, std::uint32_t flags) noexcept;   // [main]
    bool (*unregister_fd)(const clap_host*, int fd) noexcept;                    // [main]
};

} // extern "C"
