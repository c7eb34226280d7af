#include "model/HostUrls.h"

#include <gtest/gtest.h>

TEST(HostUrls, areThree) {
    for (const char* url : {"korvelWidget://tw_edit_transaction", "korvelWidget://tw_new_transaction",
                            "korvelWidget://tw_all_transactions"})
        EXPECT_TRUE(model::isHostUrl(QString::fromLatin1(url))) << url;
}

TEST(HostUrls, areNoneThatDifferByALetter) {
    for (const char* url : {"", "korvelWidget://", "korvelwidget://tw_new_transaction",
                            "korvelWidget://tw_new_transaction/", "korvelWidget://tw_new_transaction?x",
                            "korvelWidget:tw_new_transaction", " korvelWidget://tw_new_transaction",
                            "korvelWidget://TW_NEW_TRANSACTION", "file:///etc/passwd", "https://example.org"})
        EXPECT_FALSE(model::isHostUrl(QString::fromLatin1(url))) << url;
    EXPECT_FALSE(model::isHostUrl(QStringLiteral("korvelWidget://tw_new_transaction") + QChar(0)));
}
