// An allocator that records its calls.
#pragma once

#include <cstddef>
#include <cstring>
#include <inference_engine.hpp>
#include <map>
#include <memory>
#include <new>
#include <utility>

namespace InferenceEngine {

/** Allocates from the heap. Fills freed memory with a value that gives wrong results in every
 * network of the tests. */
class RecordingAllocator final : public IAllocator {
public:
    struct Record {
        int allocations = 0;
        int locks = 0;
        int unlocks = 0;
        int frees = 0;
        int freesOfNull = 0;
        std::size_t lastSize = 0;
        LockOp lastOperation = LOCK_FOR_WRITE;
        bool refuse = false;
    };

    explicit RecordingAllocator(std::shared_ptr<Record> record) : record_(std::move(record)) {}

    void Release() noexcept override { delete this; }

    void* lock(void* handle, LockOp operation) noexcept override {
        ++record_->locks;
        record_->lastOperation = operation;
        return handle;
    }

    void unlock(void* /*handle*/) noexcept override { ++record_->unlocks; }

    void* alloc(std::size_t size) noexcept override {
        ++record_->allocations;
        record_->lastSize = size;
        if (record_->refuse) {
            return nullptr;
        }
        auto* const memory = new (std::nothrow) unsigned char[size];
        sizes_[memory] = size;
        return memory;
    }

    bool free(void* handle) noexcept override {
        record_->freesOfNull += handle == nullptr ? 1 : 0;
        const auto found = sizes_.find(handle);
        if (found == sizes_.end()) {
            return false;
        }
        ++record_->frees;
        std::memset(handle, 0xFF, found->second);
        sizes_.erase(found);
        delete[] static_cast<unsigned char*>(handle);
        return true;
    }

private:
    std::shared_ptr<Record> record_;
    std::map<void*, std::size_t> sizes_;
};

}  // namespace InferenceEngine
