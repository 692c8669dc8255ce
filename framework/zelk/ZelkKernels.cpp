// What the modes with latency need: kernels, responses, and delays that line everything else up with them.
#include "framework/zelk/BandDynamics.h"
#include "framework/zelk/KernelGrid.h"
#include "framework/zelk/ZelkBand.h"
#include "framework/zelk/ZelkChannel.h"
#include "framework/zelk/ZelkProcessor.h"

#include <utility>

bool ZelkProcessor::isLinear() const noexcept REALTIME {
    return grid != nullptr && grid->mode == ProcessingMode::linearPhase;
}

void ZelkProcessor::rebuildKernels() noexcept REALTIME {
    const RealtimePermit permit{"processing mode, resolution or sample rate changed"};
    trustedRealtime([this] {
        const ProcessingMode mode = processingMode.get();
        const KernelSizes sizes = kernelSizes(mode, processingResolution.get(), static_cast<double>(sampleRate()));
        // The old one goes when no chain reads it any more.
        const std::unique_ptr<KernelGrid> old =
            std::exchange(grid, sizes.length > 0 ? std::make_unique<KernelGrid>(mode, sizes, sampleRate()) : nullptr);
        for (const std::unique_ptr<Band>& one : bandObjects) {
            one->createResponses();
            one->updateDesign(-1);
        }
        wiredChains = countChains();
        updateDelays();
        rewireChannels();
    });
}

void ZelkProcessor::updateDelays() noexcept REALTIME {
    const RealtimePermit permit{"delays of the bands' detectors"};
    const std::int32_t latency = grid != nullptr ? grid->sizes.latency(wiredChains.count()) : 0;
    for (ZelkChannel* const channel : zelkChannels)
        channel->updateDelays(latency);
    connectAnalyzer(); // it must not keep a delay that has gone
    // A kernel is made of the gain at the hop in which its sequence starts, and is heard from its middle on.
    const bool linear = isLinear();
    const std::int32_t lead = linear ? grid->sizes.length / 2 - grid->configuration->getHop() : 0;
    for (std::int32_t index = 0; index < bandCount; ++index) {
        BandDynamics::Delays delays;
        if (linear) {
            const bool second = wiredChains.count() == 2 && inMidSideChain(index);
            delays.detector = second ? lead + latency / 2 : lead;
            delays.meters = wiredChains.count() == 2 && !second ? latency - lead : 0;
        }
        trustedRealtime([&] { band(index).dynamics.setDelays(delays); });
    }
}
