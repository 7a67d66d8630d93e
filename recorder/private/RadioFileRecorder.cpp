#include "RadioFileRecorder.h"

#include "RadioFileWriter.h"
#include "RecordedNeighbours.h"
#include "RecordedService.h"
#include "Recording.h"
#include "ResultCode.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <exception>
#include <mutex>
#include <new>
#include <string>
#include <type_traits>
#include <utility>

namespace {

/// Making, placing and removing decorators, which recorders of one process share.
std::mutex& placing() {
    static auto* const mutex = new std::mutex;
    return *mutex;
}

RadioChannel servedChannel(unsigned long radioChannel) {
    return radioChannel == 2 ? 2 : 1;
}

} // namespace

/// A recorder's decorators in the broker.
class RadioFileRecorder::Attachments {
public:
    Attachments(unsigned long radioChannel, std::size_t bytes)
        : m_given(static_cast<unsigned>(radioChannel))
        , m_recording(servedChannel(radioChannel), bytes, &Attachments::placeService, this) {
        const RadioChannel served = m_recording.channel();
        m_places[0].name = ICapabilityHandler::interfaceName(served);
        m_places[1].name = ICapabilityHandler::interfaceName(m_given);
        m_places[2].name = IAcmHandler::interfaceName(served);
        m_places[3].name = IFrameFormat::interfaceName(served);
        m_places[4].name = ISystemPowerController::interfaceName(served);
        m_places[5].name = IHardwareConfigurationHandler::interfaceName();
        m_places[6].name = IOutputPowerCalculator::interfaceName(served);
    }

    /// A request came to the service past its decorator: puts one in place for the next.
    static void placeService(void* owner) {
        auto& attachments = *static_cast<Attachments*>(owner);
        try {
            const std::lock_guard<std::mutex> lock(placing());
            attachments.place<IOutputPowerCalculator, RecordedService>(attachments.m_places[6]);
        } catch (...) {
            // The next attempt may have better luck.
            return;
        }
    }

    bool attach() {
        const std::lock_guard<std::mutex> lock(placing());
        if (!m_recording.hasMemory()) {
            return false;
        }
        const bool isFirst = std::all_of(m_places.begin(), m_places.end(), [](const Place& place) {
            return place.decorator == nullptr;
        });
        const bool isWhole = placeAll();
        if (!isWhole && isFirst) {
            leaveAll();
        }
        return isWhole;
    }

    bool detach() {
        const std::lock_guard<std::mutex> lock(placing());
        return leaveAll();
    }

    Recording& recording() { return m_recording; }
    unsigned given() const { return m_given; }

    unsigned met() const { return m_met.load(std::memory_order_relaxed); }

private:
    struct Place {
        std::string name;
        Decorator* decorator = nullptr; ///< null: none of this recorder
    };

    bool placeAll() {
        bool isWhole = place<ICapabilityHandler, RecordedCapabilityHandler>(m_places[0]);
        if (m_given == m_recording.channel()) {
            m_met |= (m_met & Met::capabilityHandler) * 2;
        } else {
            isWhole = place<ICapabilityHandler, RecordedCapabilityHandler>(m_places[1]) && isWhole;
        }
        isWhole = place<IAcmHandler, RecordedAcmHandler>(m_places[2]) && isWhole;
        isWhole = place<IFrameFormat, RecordedFrameFormat>(m_places[3]) && isWhole;
        isWhole =
            place<ISystemPowerController, RecordedSystemPowerController>(m_places[4]) && isWhole;
        isWhole = place<IHardwareConfigurationHandler, RecordedHardwareConfigurationHandler>(
                      m_places[5]) &&
                  isWhole;
        isWhole = place<IOutputPowerCalculator, RecordedService>(m_places[6]) && isWhole;
        return isWhole;
    }

    bool leaveAll() {
        bool isWhole = true;
        for (Place& place : m_places) {
            if (place.decorator != nullptr) {
                isWhole = leave(place) && isWhole;
            }
        }
        return isWhole;
    }

    template <class Interface, class Made>
    bool place(Place& place) {
        InterfaceBroker& broker = InterfaceBroker::getInstance();
        auto* const published = broker.getInterface<Interface>(place.name);
        if (published == nullptr) {
            return true;
        }
        // What a service is asked belongs to a channel; what the handler of the unit is asked, to
        // the channel that asks.
        constexpr bool isShared = std::is_same_v<Interface, IHardwareConfigurationHandler>;
        auto* decorator = dynamic_cast<Made*>(published);
        if (decorator == nullptr) {
            decorator = Decorators<Interface, Made>::of(*published);
            if (decorator == nullptr) {
                return false;
            }
        }
        if (decorator == place.decorator && decorator == published) {
            return true;
        }
        if (!isShared && decorator->recording() != nullptr &&
            decorator->recording() != &m_recording) {
            return false;
        }
        if (decorator->face() != static_cast<IInterface*>(published) &&
            ResultCode::isFailure(broker.registerInterface(place.name, decorator->face()))) {
            return false;
        }
        if (place.decorator != nullptr && place.decorator != decorator) {
            drop(*place.decorator);
        }
        if (place.decorator != decorator) {
            ++decorator->users;
        }
        place.decorator = decorator;
        if (!isShared && decorator->recording() != &m_recording) {
            decorator->recordTo(&m_recording);
        }
        m_met |= 1U << (&place - m_places.data());
        return true;
    }

    /// Ends the part of a decorator, if no other place or recorder has it.
    static void drop(Decorator& decorator) {
        if (--decorator.users == 0) {
            decorator.recordTo(nullptr);
        }
    }

    bool leave(Place& place) {
        Decorator& decorator = *place.decorator;
        InterfaceBroker& broker = InterfaceBroker::getInstance();
        auto* const published = broker.getInterface<IInterface>(place.name);
        const bool isOurs = published == decorator.face();
        bool isWhole = isOurs || published == nullptr || published == decorator.real();
        if (isOurs && !isNeededByOthers(place)) {
            isWhole =
                !ResultCode::isFailure(broker.registerInterface(place.name, decorator.real()));
        }
        drop(decorator);
        place.decorator = nullptr;
        return isWhole;
    }

    /// The handler of the unit stays decorated as long as a recorder is left; another object may
    /// have two names.
    bool isNeededByOthers(const Place& place) const {
        return &place == &m_places[5] && place.decorator->users > 1;
    }

    unsigned m_given;
    Recording m_recording;
    std::array<Place, 7> m_places;
    std::atomic<unsigned> m_met{0}; ///< places that had something, as bits
};

RadioFileRecorder::RadioFileRecorder(unsigned long radioChannel, std::size_t bytes) {
    try {
        m_attachments = std::make_unique<Attachments>(radioChannel, bytes);
    } catch (...) {
        m_attachments.reset();
    }
}

RadioFileRecorder::~RadioFileRecorder() {
    detach();
}

bool RadioFileRecorder::attach() {
    try {
        return m_attachments != nullptr && m_attachments->attach();
    } catch (...) {
        return false;
    }
}

bool RadioFileRecorder::detach() {
    try {
        return m_attachments == nullptr || m_attachments->detach();
    } catch (...) {
        return false;
    }
}

bool RadioFileRecorder::write(std::ostream& stream) const {
    try {
        if (m_attachments == nullptr) {
            return false;
        }
        const Recording& recording = m_attachments->recording();
        Tape recorded(recording.channel(), recording.size());
        Tape work(recording.channel(), recording.size());
        return work.hasMemory() && recording.copyTo(recorded) &&
               RadioFileWriter(m_attachments->given(), m_attachments->met(), recorded, work)
                   .write(stream);
    } catch (...) {
        return false;
    }
}

bool RadioFileRecorder::writeWhen(RecordingTrigger trigger) {
    try {
        return m_attachments != nullptr && m_attachments->recording().arm(std::move(trigger));
    } catch (...) {
        return false;
    }
}

bool RadioFileRecorder::isTriggered() const {
    return m_attachments != nullptr && m_attachments->recording().isTriggered();
}

std::size_t RadioFileRecorder::requestCount() const {
    return m_attachments == nullptr ? 0 : m_attachments->recording().requestCount();
}
