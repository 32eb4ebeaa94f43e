// Control ids of the configuration notebook and its pages. A control that several pages have bears
// the same id on each.
#pragma once

enum ConfigControl {
    pagesNB = 100,
    okBTN = 101,
    cancelBTN = 102,

    enableCB = 591,
    pvcOnlyCB = 592,
    macAddressLBL = 593,
    macAddressED = 594,
    elanNameLBL = 595,
    elanNameED = 596,
    elanTypeLBL = 597,
    elanTypeCBO = 598,
    elanMtuLBL = 599,
    elanMtuCBO = 600,
    l3MtuLBL = 601,
    l3MtuED = 602,
    lecsRB = 603,
    lesRB = 604,
    networkPrefixLBL = 605,
    esiSelectorLBL = 606,
    networkPrefixED = 607,
    esiSelectorED = 608,
    pvcTableLBL = 609,
    pvcTBL = 610,
    addBTN = 611,
    modifyBTN = 612,
    deleteBTN = 613,
    lecTB = 614,
};
