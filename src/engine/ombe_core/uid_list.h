// Identifiers of containers, programs and streams, and the engine's list of them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

#include "ombe_core/standard_allocator.h"

namespace Ombe {

/// 64-bit identifier of a container, program or stream, fresh for the whole process.
using UID = unsigned long long;

/// Not yet assigned.
inline constexpr UID kNoUID = ~UID{0};

/// One element of a singly linked list; `next` is null at the end.
template <typename T>
struct Node {
  T value;
  Node* next;
};

template <>
OMBE_API StandardAllocator<Node<UID>>& StandardAllocator<Node<UID>>::defaultInstance();

/// Singly linked list of UIDs, returned by value. Owns its nodes, which come from the process-wide
/// allocator. Not synchronised.
class UIDList {
 public:
  using Allocator = StandardAllocator<Node<UID>>;

  UIDList() : allocator_(&Allocator::defaultInstance()) {}
  UIDList(const UIDList&) = delete;
  UIDList& operator=(const UIDList&) = delete;
  UIDList(UIDList&& other) noexcept
      : head_(std::exchange(other.head_, nullptr)),
        tail_(std::exchange(other.tail_, nullptr)),
        count_(std::exchange(other.count_, 0)),
        allocator_(other.allocator_) {}
  UIDList& operator=(UIDList&&) = delete;
  ~UIDList() {
    while (head_ != nullptr) allocator_->deallocate(std::exchange(head_, head_->next));
    tail_ = nullptr;
    count_ = 0;
  }

  /// Adds one node behind the tail. Throws std::bad_alloc and is then unchanged.
  void append(UID value) {
    Node<UID>* node = allocator_->allocate(1);
    *node = {value, nullptr};
    (tail_ == nullptr ? head_ : tail_->next) = node;
    tail_ = node;
    ++count_;
  }

  [[nodiscard]] const Node<UID>* head() const { return head_; }
  [[nodiscard]] std::uint32_t count() const { return count_; }

 private:
  Node<UID>* head_ = nullptr;
  Node<UID>* tail_ = nullptr;
  std::uint32_t count_ = 0;
  Allocator* allocator_;

  friend struct UIDListLayout;
};

struct UIDListLayout {
  static_assert(sizeof(UIDList) == 4 * sizeof(void*));
  static_assert(offsetof(UIDList, head_) == 0 && offsetof(UIDList, tail_) == sizeof(void*) &&
                offsetof(UIDList, count_) == 2 * sizeof(void*) &&
                offsetof(UIDList, allocator_) == 3 * sizeof(void*));
  static_assert(offsetof(Node<UID>, next) == 8 && sizeof(Node<UID>) == 8 + sizeof(void*));
};

}  // namespace Ombe
