// A parameter file of one adapter with comments and odd layout, and its list files.
#pragma once

#include "tests/support/temproot.h"

// adapter.conf, with the number for each '@'.
inline std::string adapterText(int adapter) {
    std::string text = testFile("config/adapter.conf");
    for (std::size_t at = text.find('@'); at != std::string::npos; at = text.find('@', at))
        text.replace(at, 1, std::to_string(adapter));
    return text;
}

constexpr const char* routedText = R"(# routed
[PVC
	VC    =100	#VC index
	Addr  =10.1.2.3	# Format:  0000778899aa=MAC 123.123.123.123=IP
	Encap =1	# 0=Null 1=LLC
	Bcast =0	# For Bridged PVC only; 1=Broadcast 0=Non-Broadcast
	Rate  =7	# MB/s
]
)";
constexpr const char* bridgedText = "[PVC\nRate=5\nAddr=00a03e000001\nVC=-1\nBcast=1\nEncap=1\n]\n";
constexpr const char* clientText = "00a03e000001/00\n00a03e000002/01\n";
