#include "orn/text/QuarkTable.h"

#include "orn/text/Quark.h"

#include <gtest/gtest.h>

#include <thread>

TEST(QuarkTable, KeepsEveryTextWhileItGrows) {
    constexpr int texts = 20000;
    std::vector<std::wstring> given;
    std::vector<Quark> quarks;
    for (int i = 0; i < texts; ++i) {
        // Lengths from a few units to more than a block, hash and order both far from the order of insertion.
        given.push_back(std::to_wstring(i * 7919 % texts) + std::wstring(i % 5000 == 0 ? 9000 : i % 40, L'.'));
        quarks.push_back(Quark::create(given.back().c_str()));
    }
    for (int i = 0; i < texts; ++i) {
        ASSERT_EQ(quarks[i].value(), given[i]) << i;
        ASSERT_EQ(Quark::create(given[i].c_str()), quarks[i]) << i;
    }
}

TEST(QuarkTable, ThreadsThatInternTheSameTextsGetTheSameQuarks) {
    constexpr int threads = 4;
    constexpr int texts = 4000;
    std::vector<std::vector<Quark>> found(threads, std::vector<Quark>(texts));
    std::vector<std::jthread> workers;
    for (int worker = 0; worker < threads; ++worker)
        workers.emplace_back([&found, worker] {
            for (int step = 0; step < 2 * texts; ++step) {
                // Two threads go up and two go down, so that they meet on new and on known texts.
                int const i = worker % 2 == 0 ? step % texts : texts - 1 - step % texts;
                std::wstring const text = L"shared " + std::to_wstring(i);
                Quark const quark = Quark::create(text.c_str());
                if (step >= texts && quark != found[worker][i]) ADD_FAILURE() << "another quark for " << i;
                if (quark.value() != text) ADD_FAILURE() << "another text for " << i;
                found[worker][i] = quark;
            }
        });
    workers.clear();
    for (int worker = 1; worker < threads; ++worker) EXPECT_EQ(found[worker], found[0]) << worker;
}
