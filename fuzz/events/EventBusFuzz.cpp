// Random sends, mode switches and listener changes against a plain model of the bus.
// Input: operations of one byte; a send is followed by the length of its text and the text, whose
// first two bytes tell one of the listeners what to do when it receives it.

#include "kovabase/events/KOVAMTEventBus.h"
#include "kovabase/events/KOVAMessageEvents.h"
#include "kovabase/events/KOVCEventListener.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <deque>
#include <exception>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr int kListeners = 4;
constexpr const char* kAddRefused =
    "LOGIC ERROR: AddListener called during multi-threaded processing. All listener registration "
    "should occur during single-threaded execution.";
constexpr const char* kRemoveRefused =
    "LOGIC ERROR: RemoveListener called during multi-threaded processing. All listener "
    "registration should occur during single-threaded execution.";

struct Thrown {
  int listener;
  bool operator==(const Thrown&) const = default;
};

// What a program can do with a bus.
class Bus {
 public:
  virtual ~Bus() = default;
  virtual void send(const std::string& text) = 0;
  virtual void sendFromGuest(const std::string& text) = 0;
  virtual void add(int listener) = 0;
  virtual void remove(int listener) = 0;
  virtual void enterParallelMode() = 0;
  virtual void leaveParallelMode() = 0;

  // What each listener does with a text, on whichever bus it receives it.
  void receive(int listener, const std::string& text) {
    log.push_back(std::to_string(listener) + ":" + text);
    if (log.size() > 2000 || text.size() < 2 || text[1] % kListeners != listener) return;
    const int next = (listener + 1) % kListeners;
    switch (text[0]) {
      case 'a': add(next); break;
      case 'r': remove(next); break;
      case 's': remove(listener); break;
      case 'f': send(text.substr(2)); break;
      case 't': throw Thrown{listener};
      case 'p': enterParallelMode(); break;
      case 'q': leaveParallelMode(); break;
      default: break;
    }
  }

  std::vector<std::string> log;
};

class RealBus : public Bus {
 public:
  RealBus() {
    for (int i = 0; i < kListeners; ++i) {
      _listeners[static_cast<std::size_t>(i)].bus = this;
      _listeners[static_cast<std::size_t>(i)].index = i;
    }
  }
  ~RealBus() override {
    log.clear();
    log.resize(3000);  // nobody acts any more
    KOVAMTEventBus::SetSingleThreadedMode();
    for (auto& listener : _listeners) {
      for (; listener.registrations > 0; --listener.registrations) bus().RemoveListener(&listener);
    }
  }
  void send(const std::string& text) override { KOVADebugEvent::Fire("%s", text.c_str()); }
  void sendFromGuest(const std::string& text) override {
    std::exception_ptr failure;
    std::thread([&] {
      try {
        send(text);
      } catch (...) {
        failure = std::current_exception();
      }
    }).join();
    if (failure != nullptr) std::rethrow_exception(failure);
  }
  void add(int index) override {
    ++at(index).registrations;
    bus().AddListener(&at(index));
  }
  void remove(int index) override { bus().RemoveListener(&at(index)); }
  void enterParallelMode() override { KOVAMTEventBus::SetParallelMode(); }
  void leaveParallelMode() override { KOVAMTEventBus::SetSingleThreadedMode(); }

 private:
  struct Listener : KOVCEventListener {
    void HandleEvent(KOVCEvent& event) override {
      const char* const message = dynamic_cast<KOVATextEvent&>(event).GetMessage();
      bus->receive(index, message != nullptr ? message : "");
    }
    RealBus* bus = nullptr;
    int index = 0;
    // At most so many; some additions are refused.
    int registrations = 0;
  };

  static KOVCEventBus& bus() { return KOVAMTEventBus::GetEventBus(); }
  Listener& at(int index) { return _listeners[static_cast<std::size_t>(index)]; }

  std::array<Listener, kListeners> _listeners;
};

class ModelBus : public Bus {
 public:
  void send(const std::string& text) override {
    if (_isParallel) {
      _queue.push_back(text);
    } else {
      deliver(text);
    }
  }
  void sendFromGuest(const std::string& text) override { send(text); }
  void add(int listener) override {
    if (_isParallel) {
      _queue.emplace_back(kAddRefused);
    } else {
      _registered.push_back({listener, ++_lastId});
    }
  }
  void remove(int listener) override {
    if (_isParallel) {
      _queue.emplace_back(kRemoveRefused);
      return;
    }
    const auto found = std::find_if(_registered.begin(), _registered.end(),
                                    [&](const auto& entry) { return entry.listener == listener; });
    if (found != _registered.end()) _registered.erase(found);
  }
  void enterParallelMode() override {
    if (_isFlushing) return;
    _queue.clear();
    _isParallel = true;
  }
  void leaveParallelMode() override {
    if (_isFlushing || !_isParallel) return;
    _isFlushing = true;
    std::exception_ptr failure;
    while (!_queue.empty()) {
      const std::string text = _queue.front();
      _queue.pop_front();
      try {
        deliver(text);
      } catch (...) {
        if (failure == nullptr) failure = std::current_exception();
      }
    }
    _isFlushing = _isParallel = false;
    if (failure != nullptr) std::rethrow_exception(failure);
  }

 private:
  struct Entry {
    int listener;
    int id;
  };

  void deliver(const std::string& text) {
    const std::vector<Entry> atStart = _registered;
    for (const Entry& entry : atStart) {
      if (std::none_of(_registered.begin(), _registered.end(),
                       [&](const Entry& other) { return other.id == entry.id; })) {
        continue;
      }
      receive(entry.listener, text);
    }
  }

  std::vector<Entry> _registered;
  int _lastId = 0;
  std::deque<std::string> _queue;
  bool _isParallel = false;
  bool _isFlushing = false;
};

// Runs the input on one bus; what is thrown becomes part of the log.
void run(Bus& bus, const std::uint8_t* data, std::size_t size) {
  int guests = 0;
  for (std::size_t i = 0; i < size; ++i) {
    const std::uint8_t operation = data[i];
    const int listener = operation / 8 % kListeners;
    try {
      switch (operation % 8) {
        case 0:
        case 1:
        case 2: {
          std::size_t length =
              i + 1 < size ? std::min<std::size_t>(data[i + 1] % 16, size - i - 2) : 0;
          std::string text;
          for (i += i + 1 < size ? 1 : 0; length > 0; --length) {
            const char c = static_cast<char>(data[++i]);
            text += c != '\0' ? c : ' ';
          }
          // A thread of its own takes its time.
          if (operation % 8 == 2 && ++guests <= 4) {
            bus.sendFromGuest(text);
          } else {
            bus.send(text);
          }
          break;
        }
        case 3:
        case 4: bus.add(listener); break;
        case 5: bus.remove(listener); break;
        case 6: bus.enterParallelMode(); break;
        default: bus.leaveParallelMode(); break;
      }
    } catch (const Thrown& thrown) {
      bus.log.push_back("thrown by " + std::to_string(thrown.listener));
    }
    if (bus.log.size() > 2000) break;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  RealBus real;
  ModelBus model;
  run(real, data, size);
  run(model, data, size);
  if (real.log != model.log) std::abort();
  return 0;
}
