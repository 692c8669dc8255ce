#include "base/UpdatedObject.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

namespace {

template <typename Function>
void listen(NotifyEvent& event, Function function) {
    event.add(std::make_unique<NotifyEvent::HandlerImplFunc<Function>>(std::move(function)));
}

class Sheet final : public UpdatedObject, public EventSender {
public:
    DeferredEvent moved{*this, this};
    DeferredEvent renamed{*this, this};
    std::string log;

    Sheet() {
        listen(moved.event, [this](EventSender* sender) {
            log += sender == this ? 'm' : '?';
            if (retriggers)
                renamed.trigger();
        });
        listen(renamed.event, [this] { log += 'r'; });
    }
    bool retriggers = false;

protected:
    void update() override {
        log += '(';
        UpdatedObject::update();
        log += ')';
    }
};

TEST(UpdatedObject, ABurstInNestedHoldsIsOneUpdateWithEachEventOnceInTheOrderOfConstruction) {
    Sheet sheet;
    {
        const UpdatedObject::Hold outer(sheet);
        {
            const UpdatedObject::Hold inner(sheet);
            for (int i = 0; i < 5; ++i) {
                sheet.renamed.trigger();
                sheet.moved.trigger();
            }
        }
        EXPECT_EQ(sheet.log, "") << "the outermost hold decides";
    }
    EXPECT_EQ(sheet.log, "(mr)");
    { const UpdatedObject::Hold idle(sheet); }
    EXPECT_EQ(sheet.log, "(mr)") << "a hold in which nothing was asked updates nothing";
    sheet.renamed.trigger();
    EXPECT_EQ(sheet.log, "(mr)(r)");
}

TEST(UpdatedObject, ARequestFromInsideTheUpdateIsDropped) {
    Sheet sheet;
    sheet.retriggers = true;
    sheet.moved.trigger();
    EXPECT_EQ(sheet.log, "(mr)") << "the later event is still in the walk that runs, and no second walk follows";
    sheet.requestUpdate();
    EXPECT_EQ(sheet.log, "(mr)()");
}

} // namespace
