#include "ezPlatform/containers/PtrList.h"

#include "ezPlatform/base/Memory.h"

#include <algorithm>
#include <climits>
#include <memory>

struct ezPtrListNode {
    void* mData;
};

/// The nodes are an array, of which those from mBegin to mEnd are in the list. A deletion moves the nodes
/// before it, never those after it, so that a walk forward is not disturbed.
struct ezPtrList {
    // Most lists hold one or two items: those lie in the list itself. Tables are made of lists by the hundred
    // thousand, so that each word counts: the array that a longer list has stands in the place of its own
    // nodes.
    static constexpr std::size_t kOwnCapacity = 2;

    ezPtrListNode* Nodes() { return mfMore ? mMore : mOwn; }
    ezPtrListNode* Begin() { return Nodes() + mBegin; }
    ezPtrListNode* End() { return Nodes() + mEnd; }
    std::size_t Count() const { return mEnd - mBegin; }

    /// The capacity is at least the power of two that mEnd has reached.
    bool IsFull() const { return mEnd >= kOwnCapacity && (mEnd & (mEnd - 1)) == 0; }
    void MakeRoom();

    std::size_t mfMore : 1;
    std::size_t mBegin : sizeof(std::size_t) * CHAR_BIT - 1;
    std::size_t mEnd = 0;
    ezPtrListFreeFunc mFreeFunc = nullptr;
    union {
        ezPtrListNode mOwn[kOwnCapacity];
        ezPtrListNode* mMore; ///< with mfMore; owned
    };

    ezPtrList() : mfMore(0), mBegin(0), mOwn{} {}
};

void ezPtrList::MakeRoom() {
    const std::size_t count = Count();
    if (mBegin > 0) {
        std::copy(Begin(), End(), Nodes());
    } else {
        ezPtrListNode* more = new ezPtrListNode[mEnd * 2];
        std::copy(Begin(), End(), more);
        const std::unique_ptr<ezPtrListNode[]> before(mfMore ? mMore : nullptr);
        mMore = more;
        mfMore = 1;
    }
    mBegin = 0;
    mEnd = count;
}

ezPtrList* ezPtrList_New() {
    return new ezPtrList;
}

void ezPtrList_Delete(ezPtrList* aList) {
    ezPtrList_Clear(aList);
    delete aList;
}

void ezPtrList_SetFreeFunc(ezPtrList* aList, ezPtrListFreeFunc aFreeFunc) {
    if (aList != nullptr) {
        aList->mFreeFunc = aFreeFunc;
    }
}

void ezPtrList_DefaultFreeFunc(void* anItem) {
    ezFree(anItem);
}

void ezPtrList_Append(ezPtrList* aList, void* anItem) {
    if (aList == nullptr) {
        return;
    }
    if (aList->IsFull()) {
        aList->MakeRoom();
    }
    aList->End()->mData = anItem;
    ++aList->mEnd;
}

std::size_t ezPtrList_GetCount(const ezPtrList* aList) {
    return aList != nullptr ? aList->Count() : 0;
}

void** ezPtrList_GetAt(const ezPtrList* aList, std::size_t anIndex) {
    if (aList == nullptr || anIndex >= aList->Count()) {
        return nullptr;
    }
    // The stored pointers are the caller's to exchange, also through a list that it may not lengthen.
    return &(const_cast<ezPtrList*>(aList)->Begin() + anIndex)->mData;
}

void ezPtrList_Clear(ezPtrList* aList) {
    if (aList == nullptr) {
        return;
    }
    // Taken out first: a free function that looks at the list finds it empty.
    const std::unique_ptr<ezPtrListNode[]> more(aList->mfMore ? aList->mMore : nullptr);
    ezPtrListNode own[ezPtrList::kOwnCapacity] = {};
    if (more == nullptr) {
        std::copy(aList->Begin(), aList->End(), own);
    }
    const ezPtrListNode* begin = more != nullptr ? more.get() + aList->mBegin : own;
    const ezPtrListNode* end = begin + aList->Count();
    aList->mfMore = 0;
    aList->mBegin = 0;
    aList->mEnd = 0;
    if (aList->mFreeFunc != nullptr) {
        std::for_each(begin, end, [aList](const ezPtrListNode& aNode) { aList->mFreeFunc(aNode.mData); });
    }
}

ezPtrListNode* ezPtrList_GetFirst(const ezPtrList* aList) {
    // Nodes are handed out for deletion through the list, which takes one that may be changed.
    return ezPtrList_GetCount(aList) != 0 ? const_cast<ezPtrList*>(aList)->Begin() : nullptr;
}

ezPtrListNode* ezPtrList_GetNext(const ezPtrList* aList, const ezPtrListNode* aNode) {
    if (aList == nullptr || aNode == nullptr) {
        return nullptr;
    }
    ezPtrList* list = const_cast<ezPtrList*>(aList);
    ezPtrListNode* next = list->Nodes() + (aNode - list->Nodes()) + 1;
    return next != list->End() ? next : nullptr;
}

void* ezPtrListNode_GetData(const ezPtrListNode* aNode) {
    return aNode != nullptr ? aNode->mData : nullptr;
}

void ezPtrList_DeleteNode(ezPtrList* aList, ezPtrListNode* aNode) {
    if (aList == nullptr || aNode == nullptr) {
        return;
    }
    void* item = aNode->mData;
    std::copy_backward(aList->Begin(), aNode, aNode + 1);
    ++aList->mBegin;
    if (aList->mFreeFunc != nullptr) {
        aList->mFreeFunc(item);
    }
}
