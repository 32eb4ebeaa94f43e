// A parameter file of one adapter with comments and odd layout, and its list files.
#pragma once

#include <string>

inline std::string adapterText(int adapter) {
    std::string text = R"(# adapter @  [ not a section ]
[Adapter = @   # suffix
    [Signalling0
	NetPrefix=47000580FFe100000000000000	# digits of either case
  UniRev = 31   PortChangeDetect=0
	AddressRegistration	= 1#
	RegDiffNetPrefix = 01
    ]
    [LEC0
	Enabled = 1   # on
	Mfs = 2
	ElanName =
	ElanType = 0
	# L3Mtu and Lecs are not here
	AtmPrefix = 47007900000000000000000000
	AtmEsiSel = 00A03E00000100
	Config = 1
	PvcConfFile = /etc/atm/bridged@
    ]

    [LEC = 1
	Enabled = 0
	ElanName = caf~e              # cannot be read whole
	PvcConfFile =
    ]
    [LES0
	Enabled = 1
	ElanName = engineering
	ElanTbl = /etc/atm/clients@
    ]
    [LECS0
	ElanType = 2
	AtmPrefix = 4700
	AtmEsiSel = 00a03e00000200
    ]
    [IP15770
	Enabled = 1
	Config =
	IPAddress = 192.168.1.2
	ServerIPAddress = 192.168.1.1
	ServerIPMask = 255.255.255.0
	PvcConfFile = /etc/atm/routed@
    ]
]   # end of @
)";
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
