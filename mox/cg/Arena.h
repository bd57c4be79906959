#pragma once

#include <memory>
#include <memory_resource>
#include <new>
#include <span>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace Mox::Cg {

/// Allocates the nodes of a tree, which are all freed together.
class Arena
{
public:
    template <class Node>
    Node* Make(Node node)
    {
        static_assert(std::is_trivially_destructible_v<Node>);
        return new (_memory.allocate(sizeof(Node), alignof(Node))) Node(std::move(node));
    }

    template <class Node>
    std::span<Node> Copy(const std::vector<Node>& nodes)
    {
        static_assert(std::is_trivially_destructible_v<Node>);
        if (nodes.empty())
            return {};
        Node* copy = std::pmr::polymorphic_allocator<Node>(&_memory).allocate(nodes.size());
        std::uninitialized_copy(nodes.begin(), nodes.end(), copy);
        return {copy, nodes.size()};
    }

    std::string_view Copy(std::string_view text)
    {
        return {Copy(std::vector<char>(text.begin(), text.end())).data(), text.size()};
    }

private:
    std::pmr::monotonic_buffer_resource _memory;
};

} // namespace Mox::Cg
