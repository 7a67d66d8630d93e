#pragma once

#include "InterfaceBroker.h"
#include "Recording.h"

#include <atomic>
#include <new>

/// What all decorators have in common: the object that they stand before, and the recording that
/// they write to while somebody records.
///
/// A service keeps the neighbours that it found, and callers keep the service: decorators are made
/// once for an object and never end.
class Decorator {
public:
    Decorator(const Decorator&) = delete;
    Decorator& operator=(const Decorator&) = delete;

    /// Null: nothing is recorded.
    Recording* recording() const { return m_recording.load(std::memory_order_acquire); }

    /// The object that the broker is to hand out in place of real().
    virtual IInterface* face() = 0;
    IInterface* real() const { return m_realFace; }

    /// Starts or ends the recording; what the last one knew is forgotten.
    void recordTo(Recording* recording) {
        m_recording.store(nullptr, std::memory_order_release);
        forget();
        m_recording.store(recording, std::memory_order_release);
    }

    unsigned users = 0; ///< recorders that have it in place; for the attachments

protected:
    explicit Decorator(IInterface& real)
        : m_realFace(&real) {}
    virtual ~Decorator() = default;
    virtual void forget() {}

private:
    std::atomic<Recording*> m_recording{nullptr};
    IInterface* m_realFace; ///< found once: the object may end before the recorder leaves it
};

/// Makes the decorators of one interface, or finds the one that an object has already. Used by one
/// thread at a time.
template <class Interface, class Made>
class Decorators {
public:
    /// @return null if the heap is used up.
    static Made* of(Interface& real) {
        for (Link* link = first(); link != nullptr; link = link->next) {
            if (&link->decorator.m_real == &real) {
                return &link->decorator;
            }
        }
        Link* const link = new (std::nothrow) Link{first(), real};
        if (link == nullptr) {
            return nullptr;
        }
        first() = link;
        return &link->decorator;
    }

private:
    struct Link {
        Link(Link* behind, Interface& real)
            : next(behind)
            , decorator(real) {}
        Link* next;
        Made decorator;
    };
    static Link*& first() {
        static Link* link = nullptr;
        return link;
    }
};
