#include "tests/check/Documents.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

using namespace check;
using namespace checking;

TEST(KindsTest, RecognisesADocumentByWhatItHolds) {
    const auto kind = [](std::string text) { return CheckBytes(std::move(text), Types()).kind; };
    EXPECT_EQ(kind(Stream("", "", "")), Kind::DeviceStream);
    EXPECT_EQ(kind("<Tan><DevKey/><TamObjID/></Tan>"), Kind::DeviceStream);
    EXPECT_EQ(kind("<AppObject><NAME>n</NAME><DataSizes/></AppObject>"), Kind::ModuleDefinition);
    EXPECT_EQ(kind("<AppObject><NAME>n</NAME><InReferences/><TAMConfig/></AppObject>"),
              Kind::ChannelDefinition);
    EXPECT_EQ(kind("<Device><FWVersion/></Device>"), Kind::DeviceLibrary);
    EXPECT_EQ(kind("<x><SNVT_1/><SNVT_2/></x>"), Kind::Catalogue);
    EXPECT_EQ(kind("<Project/>"), Kind::Project);
    EXPECT_EQ(kind("<O_Tam_id><UserName/><X_Position/><DevKey/></O_Tam_id>"), Kind::Project);
    EXPECT_EQ(kind("<O_Tam_id><UserName/><Key/><Inputs/></O_Tam_id>"), Kind::Interoperability);
    EXPECT_EQ(kind("<O_Tam_id DevAddr=\"\" AppID=\"\" TamObjectID=\"\"><Inputs/></O_Tam_id>"),
              Kind::ExportDocument);
    EXPECT_EQ(kind("<html/>"), Kind::Unknown);
}
