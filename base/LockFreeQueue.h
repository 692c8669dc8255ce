// First in, first out between any number of threads, without a lock on the way.
// Threads: any. The audio thread uses pushRealtime and pop.
//
// The queue is that of M. Michael and M. Scott, "Simple, Fast, and Practical Non-Blocking and Blocking Concurrent Queue
// Algorithms", 1996, on a pool of nodes that are named by index. A link is a 32-bit word: the low half is the index of
// a node (0: none), the high half a tag that grows at every change of that link, so that compare-and-swap does not take
// a reused index for the old one. The head is a node whose item was already taken; its successor holds the first item.
//
// Nodes live in segments that never move and are freed with the queue, so a thread that fell asleep with an old index
// still reads memory of the pool, and its compare-and-swap then fails on the tag. It may copy an item that another
// thread overwrites at that moment: items are therefore copied word by word through relaxed atomics, and the copy is
// only used when the swing of the head succeeds, which proves that nobody reused the node meanwhile.
//
// Only pushers other than the audio thread make new segments, under a mutex that pop and pushRealtime never touch, and
// ahead of need: when less than a quarter of the nodes is free.
#pragma once

#include "base/Realtime.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <mutex>
#include <new>
#include <type_traits>

template <typename T>
class LockFreeQueue {
    static_assert(std::is_trivially_copyable_v<T> && std::is_default_constructible_v<T>);

public:
    static constexpr std::uint32_t indexLimit = 65535; // nodes that 16 bits can name beside "none"

    // Room for startItems at once, rounded up to a power of 2, and for maximumItems after growth. One node more than
    // there are items is always in use, so that 65,534 items are the most.
    explicit LockFreeQueue(std::uint32_t startItems, std::uint32_t maximumItems = indexLimit + 1);
    LockFreeQueue(const LockFreeQueue&) = delete;
    LockFreeQueue& operator=(const LockFreeQueue&) = delete;

    // False: the pool is at its maximum and empty, and the item was dropped.
    [[nodiscard]] bool push(const T& item) noexcept;                  // [any but audio] may grow the pool
    [[nodiscard]] bool pushRealtime(const T& item) noexcept REALTIME; // [any] never grows: false on an empty pool
    [[nodiscard]] bool pop(T& item) noexcept REALTIME;                // [any] false: the queue was empty

    void reserve() noexcept; // [any but audio] grows when less than a quarter is free, ahead of pushes of the audio thread

    std::uint32_t capacity() const noexcept { return nodeCount.load(std::memory_order_acquire) - 1; } // [any] items
    bool empty() const noexcept REALTIME; // [any] as of a moment ago

private:
    static constexpr std::size_t wordCount = (sizeof(T) + sizeof(std::uint32_t) - 1) / sizeof(std::uint32_t);
    static constexpr std::size_t segmentLimit = 17;

    struct Node {
        std::atomic<std::uint32_t> next{0};
        std::array<std::atomic<std::uint32_t>, wordCount> words{};
    };

    static constexpr std::uint32_t indexOf(std::uint32_t link) noexcept { return link & 0xFFFFu; }
    static constexpr std::uint32_t follow(std::uint32_t old, std::uint32_t index) noexcept {
        return ((old & 0xFFFF0000u) + 0x10000u) | index; // the tag wraps
    }

    Node& node(std::uint32_t index) const noexcept REALTIME;
    std::uint32_t allocate() noexcept REALTIME; // 0: none free
    void release(std::uint32_t index) noexcept REALTIME;
    void link(std::uint32_t index, const T& item) noexcept REALTIME;
    bool grow() noexcept; // false: at the maximum, or out of memory
    void addNodes(std::uint32_t first, std::uint32_t last) noexcept;

    static void store(Node& target, const T& item) noexcept;
    static void load(const Node& source, T& item) noexcept;

    const std::uint32_t startShift; // segment 0 has 2^startShift + 1 nodes; each further one doubles the items
    const std::uint32_t maximumNodes;
    std::array<std::unique_ptr<Node[]>, segmentLimit>
        segments;      // slot k is written before any index into it is published
    std::mutex growth; // guards segments and nodeCount against other growers
    std::atomic<std::uint32_t> nodeCount{0};
    alignas(64) std::atomic<std::uint32_t> head{0};
    alignas(64) std::atomic<std::uint32_t> tail{0};
    alignas(64) std::atomic<std::uint32_t> freeList{0};
    std::atomic<std::uint32_t> freeCount{0}; // a hint for growth, not exact
};

template <typename T>
LockFreeQueue<T>::LockFreeQueue(std::uint32_t startItems, std::uint32_t maximumItems)
    : startShift(static_cast<std::uint32_t>(std::bit_width(std::clamp(startItems, 2u, 32768u) - 1)))
    , maximumNodes(maximumItems >= indexLimit ? indexLimit : maximumItems + 1) {
    const std::uint32_t startNodes = std::min((1u << startShift) + 1, maximumNodes);
    segments[0] = std::make_unique<Node[]>(startNodes);
    addNodes(1, startNodes);
    const std::uint32_t taken = allocate();
    node(taken).next.store(0, std::memory_order_relaxed);
    head.store(taken, std::memory_order_relaxed);
    tail.store(taken, std::memory_order_relaxed);
}

template <typename T>
typename LockFreeQueue<T>::Node& LockFreeQueue<T>::node(std::uint32_t index) const noexcept REALTIME {
    // Segment 0 holds the indices 1 to 2^startShift + 1, segment k the next 2^(startShift + k - 1).
    const std::uint32_t position = index < 2 ? 0 : index - 2;
    const auto segment = static_cast<std::uint32_t>(std::bit_width(position >> startShift));
    return segment == 0 ? segments[0][index - 1] : segments[segment][position - (1u << (startShift + segment - 1))];
}

template <typename T>
void LockFreeQueue<T>::store(Node& target, const T& item) noexcept {
    std::array<std::uint32_t, wordCount> words{};
    std::memcpy(words.data(), &item, sizeof(T));
    for (std::size_t i = 0; i < wordCount; ++i)
        target.words[i].store(words[i], std::memory_order_relaxed);
}

template <typename T>
void LockFreeQueue<T>::load(const Node& source, T& item) noexcept {
    std::array<std::uint32_t, wordCount> words;
    for (std::size_t i = 0; i < wordCount; ++i)
        words[i] = source.words[i].load(std::memory_order_relaxed);
    std::memcpy(static_cast<void*>(&item), words.data(), sizeof(T));
}

template <typename T>
std::uint32_t LockFreeQueue<T>::allocate() noexcept REALTIME {
    std::uint32_t first = freeList.load(std::memory_order_acquire);
    for (;;) {
        const std::uint32_t index = indexOf(first);
        if (index == 0)
            return 0;
        const std::uint32_t next = indexOf(node(index).next.load(std::memory_order_relaxed));
        if (freeList.compare_exchange_weak(first, follow(first, next), std::memory_order_acq_rel,
                                           std::memory_order_acquire)) {
            freeCount.fetch_sub(1, std::memory_order_relaxed);
            return index;
        }
    }
}

template <typename T>
void LockFreeQueue<T>::release(std::uint32_t index) noexcept REALTIME {
    std::uint32_t first = freeList.load(std::memory_order_relaxed);
    Node& freed = node(index);
    do {
        // The tag of a node's own link grows through its free life too: a sleeping pusher must not find it unchanged.
        const std::uint32_t old = freed.next.load(std::memory_order_relaxed);
        freed.next.store(follow(old, indexOf(first)), std::memory_order_relaxed);
    } while (!freeList.compare_exchange_weak(first, follow(first, index), std::memory_order_acq_rel,
                                             std::memory_order_relaxed));
    freeCount.fetch_add(1, std::memory_order_relaxed);
}

template <typename T>
void LockFreeQueue<T>::link(std::uint32_t index, const T& item) noexcept REALTIME {
    Node& added = node(index);
    store(added, item);
    added.next.store(follow(added.next.load(std::memory_order_relaxed), 0), std::memory_order_release);
    for (;;) {
        std::uint32_t last = tail.load(std::memory_order_acquire);
        std::uint32_t next = node(indexOf(last)).next.load(std::memory_order_acquire);
        if (last != tail.load(std::memory_order_acquire))
            continue;
        if (indexOf(next) != 0) { // the tail lags: help it forward
            tail.compare_exchange_weak(last, follow(last, indexOf(next)), std::memory_order_acq_rel);
            continue;
        }
        if (node(indexOf(last)).next.compare_exchange_weak(next, follow(next, index), std::memory_order_acq_rel)) {
            tail.compare_exchange_strong(last, follow(last, index), std::memory_order_acq_rel);
            return;
        }
    }
}

template <typename T>
bool LockFreeQueue<T>::push(const T& item) noexcept {
    reserve();
    std::uint32_t index = allocate();
    while (index == 0) {
        if (!grow())
            return false;
        index = allocate();
    }
    link(index, item);
    return true;
}

template <typename T>
bool LockFreeQueue<T>::pushRealtime(const T& item) noexcept REALTIME {
    const std::uint32_t index = allocate();
    if (index == 0)
        return false;
    link(index, item);
    return true;
}

template <typename T>
bool LockFreeQueue<T>::pop(T& item) noexcept REALTIME {
    for (;;) {
        std::uint32_t first = head.load(std::memory_order_acquire);
        std::uint32_t last = tail.load(std::memory_order_acquire);
        const std::uint32_t next = indexOf(node(indexOf(first)).next.load(std::memory_order_acquire));
        if (first != head.load(std::memory_order_acquire))
            continue;
        if (next == 0)
            return false;
        if (indexOf(first) == indexOf(last)) { // the tail lags: help it forward
            tail.compare_exchange_weak(last, follow(last, next), std::memory_order_acq_rel);
            continue;
        }
        load(node(next), item); // before the swing: afterwards another thread may take and reuse that node
        if (head.compare_exchange_weak(first, follow(first, next), std::memory_order_acq_rel)) {
            release(indexOf(first));
            return true;
        }
    }
}

template <typename T>
bool LockFreeQueue<T>::empty() const noexcept REALTIME {
    const std::uint32_t first = head.load(std::memory_order_acquire);
    return indexOf(node(indexOf(first)).next.load(std::memory_order_acquire)) == 0;
}

template <typename T>
void LockFreeQueue<T>::reserve() noexcept {
    const std::uint32_t count = nodeCount.load(std::memory_order_acquire);
    if (count < maximumNodes && freeCount.load(std::memory_order_relaxed) < count / 4)
        grow();
}

template <typename T>
bool LockFreeQueue<T>::grow() noexcept {
    const std::uint32_t seen = nodeCount.load(std::memory_order_acquire);
    const std::lock_guard<std::mutex> guard(growth);
    const std::uint32_t count = nodeCount.load(std::memory_order_relaxed);
    if (count != seen)
        return true; // another thread grew it meanwhile
    if (count == maximumNodes)
        return false;
    const std::uint32_t items = count - 1;
    const auto segment = static_cast<std::size_t>(std::bit_width(items >> startShift));
    const std::uint32_t wanted = std::min(items * 2 + 1, maximumNodes);
    segments[segment].reset(new (std::nothrow) Node[wanted - count]);
    if (segments[segment] == nullptr)
        return false;
    addNodes(count + 1, wanted);
    return true;
}

template <typename T>
void LockFreeQueue<T>::addNodes(std::uint32_t first, std::uint32_t last) noexcept {
    nodeCount.store(last, std::memory_order_release);
    for (std::uint32_t index = last; index >= first; --index)
        release(index); // publishes the segment with the node
}
