#include "ombe_core/standard_allocator.h"

#include "ombe_core/uid_list.h"

namespace Ombe {

template <>
StandardAllocator<char>& StandardAllocator<char>::defaultInstance() {
  static StandardAllocator<char> instance;
  return instance;
}

template <>
StandardAllocator<unsigned char>& StandardAllocator<unsigned char>::defaultInstance() {
  static StandardAllocator<unsigned char> instance;
  return instance;
}

template <>
StandardAllocator<Node<UID>>& StandardAllocator<Node<UID>>::defaultInstance() {
  static StandardAllocator<Node<UID>> instance;
  return instance;
}

}  // namespace Ombe
