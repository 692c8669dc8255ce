// A component with several outputs that are made together.
// Threads: those of wave::Producer.
#pragma once

#include "wave/Producer.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace wave {

class MultiProducer : public Component {
public:
    // Pulling any one makes all.
    class Output final : public Producer {
    public:
        Output(MultiProducer& whole, std::size_t place);

        float firstValue() const noexcept REALTIME override { return owner.firstValue(index); }
        void setActive(bool wanted) noexcept REALTIME override { owner.setActive(wanted); }
        void process(BasicBlock<float>& block, std::int32_t count, std::uint32_t mode) noexcept REALTIME override;
        void reset() noexcept REALTIME override { owner.reset(); }

    private:
        friend class MultiProducer;
        MultiProducer& owner;
        const std::size_t index;
    };

    MultiProducer(Environment& owner, std::size_t outputCount);
    ~MultiProducer() override;

    virtual float firstValue(std::size_t index) const noexcept REALTIME;

    // `chosen` comes in pointing at the own blocks; an entry may be pointed at an input's block instead of being
    // written. Called once a cycle.
    virtual void processAll(std::span<const BasicBlock<float>*> chosen, std::int32_t count) noexcept REALTIME = 0;

    virtual void reset() noexcept REALTIME {}

    void setActive(bool wanted) noexcept REALTIME;
    void setResettable(bool wanted) noexcept REALTIME;

    Output& output(std::size_t index) noexcept REALTIME { return *outputs[index]; }
    std::size_t outputCount() const noexcept REALTIME { return outputs.size(); }

protected:
    BasicBlock<float>& block(std::size_t index) noexcept REALTIME { return *outputs[index]->ownBlock; }

private:
    void run(std::int32_t count) noexcept REALTIME;

    std::vector<std::unique_ptr<Output>> outputs; // never empty
    std::vector<const BasicBlock<float>*> results;
};

} // namespace wave
