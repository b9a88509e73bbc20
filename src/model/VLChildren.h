#pragma once

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

// The one rule for a record's lists of children, which know their parent through parent() and
// setParent(): a child that joins a list gets the record as parent; a child that leaves it loses
// its parent, unless another record has taken it since. A null child does not join.

template <typename Child, typename Parent>
void VLReleaseChild(Child& child, const std::shared_ptr<Parent>& parent)
{
    if (child.parent() == parent) child.setParent(nullptr);
}

template <typename Child, typename Parent>
void VLSetChildren(std::vector<std::shared_ptr<Child>>& list, std::vector<std::shared_ptr<Child>> children,
                   const std::shared_ptr<Parent>& parent)
{
    for (const auto& child : list) VLReleaseChild(*child, parent);
    list = std::move(children);
    for (const auto& child : list) child->setParent(parent);
}

// The index lies within 0 and the list's size.
template <typename Child, typename Parent>
void VLInsertChild(std::vector<std::shared_ptr<Child>>& list, std::shared_ptr<Child> child, size_t index,
                   const std::shared_ptr<Parent>& parent)
{
    if (!child) return;
    child->setParent(parent);
    list.insert(list.begin() + static_cast<std::ptrdiff_t>(index), std::move(child));
}

template <typename Child, typename Parent>
void VLAddChild(std::vector<std::shared_ptr<Child>>& list, std::shared_ptr<Child> child,
                const std::shared_ptr<Parent>& parent)
{
    VLInsertChild(list, std::move(child), list.size(), parent);
}

// The index must lie within the list.
template <typename Child, typename Parent>
void VLReplaceChild(std::vector<std::shared_ptr<Child>>& list, size_t index, std::shared_ptr<Child> child,
                    const std::shared_ptr<Parent>& parent)
{
    VLReleaseChild(*list[index], parent);
    child->setParent(parent);
    list[index] = std::move(child);
}

// Whether the child was in the list. The child is taken by value, since it may be an entry of
// the list itself.
template <typename Child, typename Parent>
bool VLRemoveChild(std::vector<std::shared_ptr<Child>>& list, std::shared_ptr<Child> child,
                   const std::shared_ptr<Parent>& parent)
{
    if (std::erase(list, child) == 0) return false;
    VLReleaseChild(*child, parent);
    return true;
}
